#pragma once

#include <QtGlobal>

/// How fast a transfer is, and whether another connection is likely to make it faster. Measured
/// once a second.
class KovSpeedMeter {
public:
    explicit KovSpeedMeter(int maxConnections) : m_maxConnections(maxConnections) { }

    /// Begins to measure: at that time of a monotonic clock so much is there.
    void start(qint64 nowMs, qint64 receivedBytes);
    void measure(qint64 nowMs, qint64 receivedBytes);
    qint64 bytesPerSecond() const { return m_bytesPerSecond; }

    /// After a measurement, while all connections are busy. Each that was added has some seconds to
    /// show that it brings a tenth more; else there are no further ones.
    bool isAnotherWorthIt(int connections, qint64 missingBytes);
    int maxConnections() const { return m_maxConnections; }
    /// The server does not allow more.
    void setMaxConnections(int count) { m_maxConnections = count; }

private:
    int m_maxConnections;
    qint64 m_lastMs = 0;
    qint64 m_lastReceived = 0;
    qint64 m_bytesPerSecond = 0;
    qint64 m_speedBefore = 0;
    int m_measurements = 0;
};
