#include "kovwaitingjobs.h"

#include <algorithm>
#include <utility>

int KovWaitingJobs::retryDelayMs(int attempts)
{
    constexpr int firstMs = 1000;
    constexpr int maxMs = 300'000;
    int delay = firstMs;
    for (int i = 1; i < attempts && delay < maxMs; ++i)
        delay *= 2;
    return std::min(delay, maxMs);
}

qint64 KovWaitingJobs::takeReady()
{
    const qint64 id = *m_ready.cbegin();
    m_ready.erase(m_ready.cbegin());
    return id;
}

qint64 KovWaitingJobs::onRetryTime(qint64 nowMs)
{
    while (!m_retries.empty() && m_retries.cbegin()->first <= nowMs) {
        m_ready.insert(m_retries.cbegin()->second);
        m_retries.erase(m_retries.cbegin());
    }
    return m_retries.empty() ? -1 : m_retries.cbegin()->first - nowMs;
}

QHash<qint64, qint64> KovWaitingJobs::retryTimes() const
{
    QHash<qint64, qint64> times;
    for (const auto &[time, id] : m_retries)
        times.insert(id, time);
    return times;
}

bool KovWaitingJobs::onFreeSpace(qint64 freeBytes)
{
    m_waitingForSpace.removeIf(
        [this, freeBytes](const std::pair<const qint64 &, qint64 &> &waiting) {
            const auto &[id, bytes] = waiting;
            if (bytes > freeBytes)
                return false;
            m_ready.insert(id);
            return true;
        });
    return m_waitingForSpace.isEmpty();
}

void KovWaitingJobs::remove(qint64 id)
{
    m_ready.erase(id);
    leave(id);
}

bool KovWaitingJobs::hurry(qint64 id)
{
    const bool waited = leave(id);
    if (waited)
        m_ready.insert(id);
    return waited;
}

bool KovWaitingJobs::leave(qint64 id)
{
    const auto retries =
        std::erase_if(m_retries, [id](const auto &retry) { return retry.second == id; });
    return m_waitingForSpace.remove(id) || retries > 0;
}
