#include "kovspeedmeter.h"

#include "kovunits.h"

#include <algorithm>

namespace {

constexpr int measurementsToJudge = 2;
constexpr qint64 worthwhileShare = 10;
/// A file that will be complete sooner needs no further connection.
constexpr qint64 worthwhileSeconds = 3;

} // namespace

void KovSpeedMeter::start(qint64 nowMs, qint64 receivedBytes)
{
    m_lastMs = nowMs;
    m_lastReceived = receivedBytes;
}

void KovSpeedMeter::measure(qint64 nowMs, qint64 receivedBytes)
{
    if (nowMs > m_lastMs) {
        const qint64 bytes = std::max<qint64>(0, receivedBytes - m_lastReceived);
        const qint64 latest = bytes * millisecondsPerSecond / (nowMs - m_lastMs);
        m_bytesPerSecond = (m_bytesPerSecond + latest) / 2;
    }
    start(nowMs, receivedBytes);
}

bool KovSpeedMeter::isAnotherWorthIt(int connections, qint64 missingBytes)
{
    if (connections >= m_maxConnections || ++m_measurements < measurementsToJudge)
        return false;
    m_measurements = 0;
    if (connections > 1 && m_bytesPerSecond < m_speedBefore + m_speedBefore / worthwhileShare) {
        m_maxConnections = connections;
        return false;
    }
    m_speedBefore = m_bytesPerSecond;
    return missingBytes > worthwhileSeconds * m_bytesPerSecond;
}
