#pragma once

#include "kovtransfer.h"

#include <vector>

class KovContentDecoder;
class KovHttpExchange;

/**
 * Downloads a file as it is on the server.
 *
 * Resumes the partial file if the server still has the same file, else starts over. A large file is
 * downloaded over several connections while each further one makes it faster.
 */
class KovFileTransfer : public KovTransfer {
    Q_OBJECT
public:
    KovFileTransfer(KovJob job, KovDownloadRequest request, Environment environment,
                    QObject *parent = nullptr, QtClock &clock = QtClock::system());
    ~KovFileTransfer() override;

    void start() override;
    /// Syncs the file, and adds a connection where that may help.
    void tick() override;
    bool isResumable() const override;
    qint64 receivedBytes() const override { return m_ranges.receivedBytes(); }
    double doneShare() const override { return m_job.doneShare(receivedBytes()); }
    qsizetype connections() const override { return static_cast<qsizetype>(m_connections.size()); }

protected:
    void abort() override;
    void storeProgress() override { m_job.ranges = m_ranges; }

private:
    struct Connection;

    void resume();
    void beginAnew();
    Connection &connectTo(qsizetype range);
    void onHeadersReceived(Connection &connection);
    KovFailure takeWholeFile(const KovHttpResponse &response);
    void pumpAll();
    void pump(Connection &connection);
    bool keep(qsizetype range, const char *bytes, qint64 size);
    void onBodyEnded(Connection &connection);
    bool confirmEnd(const Connection &connection);
    /// Whether the file is shorter than the size known to the browser, if the server sends none.
    bool isCut() const;
    void close(const Connection &connection);
    void drop(Connection &connection, const KovFailure &failure);
    void fetchRest();
    void splitLargestRange();
    bool isFetched(qsizetype range) const;
    bool areAllBusy() const;
    void finish();

    std::unique_ptr<KovContentDecoder> m_decoder;
    /// What was written, whether or not it is synced.
    KovRanges m_ranges;
    std::vector<std::unique_ptr<Connection>> m_connections;
    bool m_acceptsRanges = false;
    bool m_storing = false;
};
