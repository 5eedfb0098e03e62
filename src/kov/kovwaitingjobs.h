#pragma once

#include <QHash>

#include <map>
#include <set>

/// The jobs that do not run yet: ready, waiting for a retry, or for disk space.
class KovWaitingJobs {
public:
    /// Ready jobs wait for their turn only, in the order of their ids.
    void addReady(qint64 id) { m_ready.insert(id); }
    bool hasReady() const { return !m_ready.empty(); }
    /// There must be one.
    qint64 takeReady();

    /// The delay before the next attempt after so many without progress: exponential backoff from
    /// 1 s to 5 min.
    static int retryDelayMs(int attempts);
    /// Waits for its next attempt, at that time of the monotonic clock.
    void addRetry(qint64 id, qint64 timeMs) { m_retries.emplace(timeMs, id); }
    /// Makes those ready whose time has come. Returns the milliseconds until the next one; -1 for
    /// none.
    qint64 onRetryTime(qint64 nowMs);
    /// By id, when the next attempt is.
    QHash<qint64, qint64> retryTimes() const;

    /// Waits for so many free bytes on the disk.
    void addWaitingForSpace(qint64 id, qint64 bytes) { m_waitingForSpace.insert(id, bytes); }
    /// Makes those ready that fit. Returns whether all do.
    bool onFreeSpace(qint64 freeBytes);

    bool isEmpty() const
    {
        return m_ready.empty() && m_retries.empty() && m_waitingForSpace.isEmpty();
    }
    void remove(qint64 id);
    /// Makes a job ready that waits for its next attempt or for disk space; returns whether it did.
    bool hurry(qint64 id);

private:
    bool leave(qint64 id);

    std::set<qint64> m_ready;
    std::multimap<qint64, qint64> m_retries;
    QHash<qint64, qint64> m_waitingForSpace;
};
