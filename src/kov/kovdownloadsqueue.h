#pragma once

#include "kovjob.h"
#include "kovjobsaver.h"
#include "kovjobstore.h"
#include "kovoffers.h"
#include "kovtransfer.h"
#include "kovtransferfactory.h"
#include "kovwaitingjobs.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <memory>

class QtAppAbstractSettingsManager;
class QtAppPortableModeSupport;

/**
 * The application's downloads: runs them first come, first served, several at a time, retries
 * transient failures, and stores the outcome of each. A job is on the disk before its addition is
 * confirmed, and continues after a restart.
 */
class KovDownloadsQueue : public QObject {
    Q_OBJECT
public:
    /// A snapshot of a job.
    struct Download {
        KovJob job;
        qint64 receivedBytes = 0;
        /// The finished share, from 0 to 1; -1 while unknown.
        double doneShare = -1;
        qint64 bytesPerSecond = 0;
        qsizetype connections = 0;
        /// Until the next attempt; -1 when none is scheduled.
        qint64 retryInMs = -1;
    };

    /// Consecutive attempts without progress.
    static constexpr int maxAttempts = 10;

    /// The settings and the portable-mode support are for KovTransferFactory. Nothing is read or
    /// started yet.
    KovDownloadsQueue(QSharedPointer<QtAppAbstractSettingsManager> settings,
                      QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                      const QString &storePath, QObject *parent = nullptr,
                      QtClock &clock = QtClock::system());
    ~KovDownloadsQueue() override;

    /// Loads the jobs and resumes them.
    void start();

    /// For a download that the browser may still have: requests it at once, and answers when the
    /// file arrives, with the job on the disk, or with the failure; then there is no job. If the
    /// offerer is destroyed before the answer, a job is kept in either case.
    void offer(const KovDownloadRequest &request, QObject *offerer, KovOffers::Answer answer);
    /// Returns why they could not be added; empty when they are on the disk.
    QString add(const QList<KovDownloadRequest> &requests);

    /// The id of the job that was added last.
    qint64 lastId() const { return m_lastId; }
    /// The download folder.
    QString folderPath() const { return m_transfers.folderPath(); }
    /// In the order in which they came.
    QList<Download> downloads() const;
    bool contains(qint64 id) const { return m_jobs.contains(id); }
    /// As it was stored last; of no job, an empty one.
    KovJob job(qint64 id) const { return m_jobs.value(id); }
    /// The job must exist. Return whether they changed anything.
    bool pause(qint64 id);
    /// Resumes a job that is paused, has failed, or waits for its next attempt.
    bool resume(qint64 id);
    bool remove(qint64 id, bool withFile);

    /// Whether any job is running or will start by itself.
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
    QString take(KovTransfer *transfer);
    /// Keeps the job of a failed offer whose offerer is gone.
    void keep(const KovDownloadRequest &request);
    void watch(qint64 id, KovTransfer *transfer);
    void startNext();
    void start(qint64 id);
    void onEnded(qint64 id, const KovFailure &failure);
    void tryLater(KovJob &job, const KovFailure &failure);
    void waitForSpace(KovJob &job, const KovFailure &failure);
    void finish(KovJob &job, KovJob::State state, const QString &error);
    void onTick();
    void onRetryTime();
    void checkFreeSpace();
    void removeFiles(const KovJob &job, bool finishedToo);
    KovJob newJob(const QUrl &url);

    QtClock &m_clock;
    KovJobStore m_store;
    KovTransferFactory m_transfers;
    QMap<qint64, KovJob> m_jobs;
    KovJobSaver m_saver;
    qint64 m_lastId = 0;
    QHash<qint64, KovTransfer *> m_running;
    KovOffers m_offers;
    KovWaitingJobs m_waiting;
    const std::unique_ptr<QtSingleShotTimer> m_tickTimer;
    const std::unique_ptr<QtSingleShotTimer> m_retryTimer;
    const std::unique_ptr<QtSingleShotTimer> m_spaceTimer;
    bool m_diskFull = false;
    bool m_stopping = false;
};
