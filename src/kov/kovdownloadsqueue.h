#pragma once

#include "kovdownloadfolder.h"
#include "kovdownloadrequest.h"

#include <QHash>
#include <QList>
#include <QNetworkAccessManager>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QUrl>

#include <deque>
#include <memory>

class KovHttpDownload;
class QtAppAbstractSettingsManager;
class QtAppPortableModeSupport;

/**
 * The downloads of the application: performs them in the order in which they came, several at a
 * time, and remembers how each went. Lives in memory only: what is under way when the application
 * ends is given up.
 */
class KovDownloadsQueue : public QObject {
    Q_OBJECT
public:
    struct Job {
        enum class State { Waiting, Running, Finished, Failed };

        int id = 0;
        QUrl url;
        State state = State::Waiting;
        qint64 receivedBytes = 0;
        /// -1 while unknown.
        qint64 totalBytes = -1;
        /// Empty before the server has answered.
        QString path;
        /// Why it failed.
        QString error;
    };

    /// How many run at a time unless the setting "MaxDownloads" says otherwise.
    static constexpr int defaultMaxRunning = 8;

    /// The settings name the download folder and the suffix of partial files. The portable-mode
    /// support may be null.
    KovDownloadsQueue(QSharedPointer<QtAppAbstractSettingsManager> settings,
                      QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                      QObject *parent = nullptr);
    ~KovDownloadsQueue() override;

    /// The URL must be one that KovHttpDownload supports. It begins from the event loop.
    void add(const KovDownloadRequest &request);

    /// In the order in which they came.
    QList<Job> jobs() const;

Q_SIGNALS:
    /// A job has finished or failed.
    void jobEnded(int id);

private:
    struct Waiting {
        int id = 0;
        KovDownloadRequest request;
    };

    void startNext();
    void start(const Waiting &waiting);
    void onFinished(int id, const QString &error);
    int maxRunning() const;
    /// Made anew when the settings have changed.
    const std::shared_ptr<KovDownloadFolder> &folder();
    Job &job(int id) { return m_jobs[id - 1]; }

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
    QNetworkAccessManager m_network;
    std::shared_ptr<KovDownloadFolder> m_folder;
    QList<Job> m_jobs;
    std::deque<Waiting> m_waiting;
    QHash<int, KovHttpDownload *> m_running;
};
