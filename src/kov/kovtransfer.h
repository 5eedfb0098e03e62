#pragma once

#include "kovanswer.h"
#include "kovjob.h"
#include "kovspeedmeter.h"
#include "qtclock.h"

#include <QObject>
#include <QSharedPointer>

#include <memory>
#include <vector>

class KovContentDecoder;
class KovDownloadFolder;
class KovFileNaming;
class KovHttpExchange;
class KovNetworkPool;
class KovPartialFile;
class KovSpeedLimit;

/**
 * One attempt at a job: fetches what is missing of the file, and gives it its final name.
 *
 * Goes on where the partial file ends if the server still has the same file, else begins anew. A
 * large file is fetched over several connections while each further one makes it faster. After a
 * failure the partial file stays for the next attempt.
 */
class KovTransfer : public QObject {
    Q_OBJECT
public:
    /// What transfers share, and the settings as they were at the start.
    struct Environment {
        QSharedPointer<KovNetworkPool> network;
        QSharedPointer<KovSpeedLimit> speedLimit;
        std::shared_ptr<KovDownloadFolder> folder;
        int maxConnections = 1;
        bool takesModificationTime = false;
    };

    KovTransfer(KovJob job, KovDownloadRequest request, Environment environment,
                QObject *parent = nullptr, QtClock &clock = QtClock::system());
    ~KovTransfer() override;

    void start();
    /// Ends the connections. ended() follows when what has come is on the disk.
    void stop();
    /// To be called each second: has the progress put on the disk, and adds a connection where that
    /// may help.
    void tick();

    /// The job with what of it is on the disk.
    const KovJob &job() const { return m_job; }
    /// As it has to be asked for next time.
    const KovDownloadRequest &request() const { return m_request; }
    /// Whether that is not as it was at the start.
    bool isAskedElsewhere() const { return m_askedElsewhere; }
    /// Whether another attempt can go on where this one stops.
    bool isResumable() const;
    /// Whether the file is whole and has its name.
    bool isFinished() const { return m_finished; }
    /// Whether ended() is on its way.
    bool isEnding() const { return m_ending; }
    qint64 receivedBytes() const { return m_ranges.receivedBytes(); }
    qint64 bytesPerSecond() const { return m_speed.bytesPerSecond(); }
    qsizetype connections() const { return static_cast<qsizetype>(m_connections.size()); }

Q_SIGNALS:
    /// Once, at the first byte of an answer that is the file, or at the end of an empty one.
    void accepted();
    /// There is a file, or more of it is on the disk: see job().
    void progressStored();
    /// The file is whole, and is moved to the path of the job when this returns: who finds it there
    /// after a sudden end knows that the job is done.
    void naming();
    /// Once, the last signal. After stop() without a failure although the job may not be finished.
    void ended(const KovFailure &failure);

private:
    struct Connection;

    void resume();
    void beginAnew();
    Connection &connectTo(qsizetype range);
    void onAnswered(Connection &connection);
    KovFailure takeWholeFile(const KovAnswer &answer);
    KovFailure openFile(const KovAnswer &answer);
    void pumpAll();
    void pump(Connection &connection);
    bool keep(qsizetype range, const char *bytes, qint64 size);
    void onBodyEnded(Connection &connection);
    bool confirmEnd(const Connection &connection);
    void close(const Connection &connection);
    void drop(Connection &connection, const KovFailure &failure);
    void fetchRest();
    void splitLargestRange();
    bool isFetched(qsizetype range) const;
    bool areAllBusy() const;
    void complete();
    void giveFinalName();
    void end(const KovFailure &failure);

    KovJob m_job;
    KovDownloadRequest m_request;
    const Environment m_environment;
    QtClock &m_clock;
    std::unique_ptr<KovPartialFile> m_file;
    std::unique_ptr<KovContentDecoder> m_decoder;
    /// As far as they were written.
    KovRanges m_ranges;
    std::vector<std::unique_ptr<Connection>> m_connections;
    KovSpeedMeter m_speed;
    std::unique_ptr<KovFileNaming> m_naming;
    bool m_acceptsRanges = false;
    bool m_accepted = false;
    bool m_askedElsewhere = false;
    bool m_ending = false;
    bool m_storing = false;
    bool m_finished = false;
};
