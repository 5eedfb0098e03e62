#pragma once

#include <QtGlobal>

/// The speed of a transfer, and whether another connection is likely to increase it. Measured once
/// a second.
class KovSpeedMeter {
public:
    explicit KovSpeedMeter(int maxConnections) : m_maxConnections(maxConnections) { }

    /// Begins to measure with so many bytes at that time of a monotonic clock.
    void start(qint64 nowMs, qint64 receivedBytes);
    void measure(qint64 nowMs, qint64 receivedBytes);
    qint64 bytesPerSecond() const { return m_bytesPerSecond; }

    /// To be asked after a measurement, while all connections are busy. Each one that was added has
    /// some seconds to make the transfer a tenth faster; else no further ones are added.
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
