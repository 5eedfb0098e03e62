#pragma once

#include "kovhttpresponse.h"
#include "kovjob.h"
#include "kovspeedmeter.h"
#include "qtclock.h"

#include <QObject>
#include <QSharedPointer>

#include <memory>

class KovDownloadFolder;
class KovFileNaming;
class KovNetworkPool;
class KovPartialFile;
class KovSpeedLimit;

/// One attempt at a job: downloads what is missing of the file, and gives it its final name. After
/// a failure the partial file is kept for the next attempt.
class KovTransfer : public QObject {
    Q_OBJECT
public:
    /// Shared by all transfers, with the settings at the start.
    struct Environment {
        QSharedPointer<KovNetworkPool> network;
        QSharedPointer<KovSpeedLimit> speedLimit;
        std::shared_ptr<KovDownloadFolder> folder;
        int maxConnections = 1;
        bool takesModificationTime = false;
    };

    ~KovTransfer() override;

    virtual void start() = 0;
    /// Closes the connections. ended() follows when the received data is on the disk.
    void stop() { end({}); }
    /// To be called each second.
    virtual void tick() = 0;

    /// The job with its progress on the disk.
    const KovJob &job() const { return m_job; }
    /// The request for the next attempt.
    const KovDownloadRequest &request() const { return m_request; }
    /// Whether redirects have changed it since the start.
    bool isRedirected() const { return m_redirected; }
    /// Whether another attempt can resume where this one stops.
    virtual bool isResumable() const = 0;
    /// Whether the file is complete and has its final name.
    bool isFinished() const { return m_finished; }
    /// Whether ended() will follow by itself.
    bool isEnding() const { return m_ending; }
    virtual qint64 receivedBytes() const = 0;
    /// The finished share, from 0 to 1; -1 while unknown.
    virtual double doneShare() const = 0;
    qint64 bytesPerSecond() const { return m_speed.bytesPerSecond(); }
    virtual qsizetype connections() const = 0;

Q_SIGNALS:
    /// Once, at the first byte of the file, or at the end of an empty one.
    void accepted();
    /// job() has changed: there is a file, or more of it is on the disk.
    void progressStored();
    /// The file is complete, and is moved to the job's path when this returns. If the process ends
    /// meanwhile, a file at that path means that the job is done.
    void naming();
    /// Once, the last signal. After stop() there is no failure, though the job may not be finished.
    void ended(const KovFailure &failure);

protected:
    KovTransfer(KovJob job, KovDownloadRequest request, Environment environment, QObject *parent,
                QtClock &clock);

    /// Whether the last process ended between renaming the file and storing that the job is done.
    bool isNamed() const;
    /// Then there is nothing to do.
    void finishNamed();
    /// Provides an empty partial file for that name: the one of the last attempt, or a new one.
    KovFailure openFile(const QString &name);
    /// The file is complete: syncs it and gives it its final name.
    void complete();
    /// Emits accepted() unless it was.
    void accept();
    void end(const KovFailure &failure);
    /// Closes the connections.
    virtual void abort() = 0;
    /// Updates the job with the data written so far.
    virtual void storeProgress() = 0;

    KovJob m_job;
    KovDownloadRequest m_request;
    const Environment m_environment;
    QtClock &m_clock;
    std::unique_ptr<KovPartialFile> m_file;
    KovSpeedMeter m_speed;
    bool m_redirected = false;
    bool m_accepted = false;
    bool m_ending = false;
    bool m_finished = false;

private:
    void giveFinalName();

    std::unique_ptr<KovFileNaming> m_naming;
};

/// The failure for a failed write to the file.
KovFailure writeFailure(const KovPartialFile &file, int errorNumber);
