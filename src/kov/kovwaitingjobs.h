#pragma once

#include <QHash>

#include <map>
#include <set>

/// The jobs that do not run yet, and what each of them waits for.
class KovWaitingJobs {
public:
    /// Whoever is ready waits for nothing but its turn, in the order of the ids.
    void addReady(qint64 id) { m_ready.insert(id); }
    bool hasReady() const { return !m_ready.empty(); }
    /// There must be one.
    qint64 takeReady();

    /// For its next attempt, at that time of the monotonic clock.
    void addRetry(qint64 id, qint64 timeMs) { m_retries.emplace(timeMs, id); }
    /// Those whose time has come are ready. Returns in how many milliseconds the next one is; -1
    /// for none.
    qint64 onRetryTime(qint64 nowMs);
    /// By id, when the next attempt is.
    QHash<qint64, qint64> retryTimes() const;

    /// For so many free bytes on the disk.
    void addRoomless(qint64 id, qint64 bytes) { m_roomless.insert(id, bytes); }
    /// Those that fit are ready. Returns whether all do.
    bool onRoom(qint64 freeBytes);

    bool isEmpty() const { return m_ready.empty() && m_retries.empty() && m_roomless.isEmpty(); }
    void remove(qint64 id);
    /// Makes ready what waits for its next attempt or for room; returns whether it did.
    bool hurry(qint64 id);

private:
    bool leave(qint64 id);

    std::set<qint64> m_ready;
    std::multimap<qint64, qint64> m_retries;
    QHash<qint64, qint64> m_roomless;
};
