#pragma once

#include "kovjob.h"
#include "kovjobstore.h"
#include "kovtransfer.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QSharedPointer>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <set>

class KovDownloadFolder;
class KovNetworkPool;
class KovSpeedLimit;
class QtAppAbstractSettingsManager;
class QtAppPortableModeSupport;

/**
 * The downloads of the application: performs them in the order in which they came, several at a
 * time, tries again what may pass, and remembers how each went. The list is on the disk before
 * anybody is told of it, and goes on where it was when the application starts again.
 */
class KovDownloadsQueue : public QObject {
    Q_OBJECT
public:
    /// A job as it is at this moment.
    struct Download {
        KovJob job;
        qint64 receivedBytes = 0;
        qint64 bytesPerSecond = 0;
        qsizetype connections = 0;
        /// Until the next attempt; -1 when none is waited for.
        qint64 retryInMs = -1;
    };

    /// How many run at a time unless the setting "MaxDownloads" says otherwise.
    static constexpr int defaultMaxRunning = 8;
    /// To one server for one file, unless the setting "MaxConnectionsPerServer" says otherwise.
    static constexpr int defaultMaxConnections = 4;
    /// A server that has not begun to send an offered file by then is too slow to wait for: who
    /// offers waits for 60 s.
    static constexpr int offerAnsweredWithinMs = 20'000;
    /// Attempts in a row that bring nothing.
    static constexpr int maxAttempts = 10;
    /// How long to wait before the next attempt after so many in a row that brought nothing:
    /// doubling from 1 s to 5 min.
    static int retryDelayMs(int attempts);

    /// The settings name the download folder, the suffix of partial files and the limits. The
    /// portable-mode support may be null. Nothing is read or started yet.
    KovDownloadsQueue(QSharedPointer<QtAppAbstractSettingsManager> settings,
                      QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                      const QString &storePath, QObject *parent = nullptr,
                      QtClock &clock = QtClock::system());
    ~KovDownloadsQueue() override;

    /// Reads the list and goes on with it.
    void start();

    /// Empty when it has been added.
    using Answer = std::function<void(const QString &error)>;
    /// A download that somebody else has as well: asks the server for it at once, and answers when
    /// the file comes, with the job on the disk, or why it does not; then there is no job. When the
    /// one who offers goes before the answer, there is a job in either case.
    void offer(const KovDownloadRequest &request, QObject *offerer, Answer answer);
    /// Returns why they could not be added; empty when they are on the disk.
    QString add(const QList<KovDownloadRequest> &requests);

    /// The number of the download that was added last; the next one has the next number.
    qint64 lastId() const { return m_lastId; }
    /// Into which downloads go.
    QString folderPath() const;
    /// In the order in which they came.
    QList<Download> downloads() const;
    bool contains(qint64 id) const { return m_jobs.contains(id); }
    /// These are for a job that is there, and return whether they changed anything.
    bool pause(qint64 id);
    /// Goes on with what is paused, has failed, or waits for its next attempt.
    bool resume(qint64 id);
    bool remove(qint64 id, bool withFile);

    /// Whether something is to be done that nobody has to ask for again.
    bool hasWork() const;
    /// Ends all transfers; stopped() follows from the event loop when everything is on the disk.
    void stop();

Q_SIGNALS:
    void jobAdded(const KovJob &job);
    /// A job has finished or failed.
    void jobEnded(const KovJob &job);
    /// hasWork() may have changed.
    void workChanged();
    void stopped();

private:
    struct Offer {
        QPointer<QObject> offerer;
        Answer answer;
        std::unique_ptr<QtSingleShotTimer> timer;
        bool timedOut = false;
    };

    KovTransfer *createTransfer(const KovJob &job, const KovDownloadRequest &request);
    void onOfferAccepted(KovTransfer *transfer);
    void onOfferEnded(KovTransfer *transfer, const KovFailure &failure);
    void watch(qint64 id, KovTransfer *transfer);
    void startNext();
    void start(qint64 id);
    void onEnded(qint64 id, const KovFailure &failure);
    void tryLater(KovJob &job, const KovFailure &failure);
    void waitForRoom(KovJob &job, const KovFailure &failure);
    /// Whether it has waited for its next attempt or for room.
    bool waitNoLonger(qint64 id);
    void finish(KovJob &job, KovJob::State state, const QString &error);
    void onTick();
    void onRetryTime();
    void onRoomTime();
    void saveSoon(qint64 id);
    void save();
    void removeFiles(const KovJob &job, bool finishedToo);
    void saveOne(const KovJob &job);
    KovJob newJob(const QUrl &url);
    /// One object for each folder and suffix.
    std::shared_ptr<KovDownloadFolder> folder(const QString &path);
    qint64 number(const QString &setting, qint64 otherwise) const;

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
    QtClock &m_clock;
    KovJobStore m_store;
    const QSharedPointer<KovNetworkPool> m_network;
    const QSharedPointer<KovSpeedLimit> m_speedLimit;
    QMap<QString, std::shared_ptr<KovDownloadFolder>> m_folders;
    QMap<qint64, KovJob> m_jobs;
    qint64 m_lastId = 0;
    QHash<qint64, KovTransfer *> m_running;
    std::map<KovTransfer *, Offer> m_offers;
    /// Waiting for their turn.
    std::set<qint64> m_ready;
    /// Waiting for the next attempt: when, by the monotonic clock, and which.
    std::multimap<qint64, qint64> m_retries;
    QSet<qint64> m_unsaved;
    const std::unique_ptr<QtSingleShotTimer> m_tickTimer;
    const std::unique_ptr<QtSingleShotTimer> m_retryTimer;
    const std::unique_ptr<QtSingleShotTimer> m_roomTimer;
    /// Waiting for room on the disk, and for how much.
    QHash<qint64, qint64> m_roomless;
    bool m_diskFull = false;
    bool m_stopping = false;
};
