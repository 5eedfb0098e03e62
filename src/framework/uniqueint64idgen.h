#pragma once

#include <QtGlobal>
#include <atomic>

/// Generates ids that are unique within the process: 1, 2, 3 … Any thread.
class UniqueInt64IdGen {
public:
    explicit UniqueInt64IdGen(qint64 firstId = 1) : m_next(firstId) { }

    qint64 nextId() { return m_next.fetch_add(1); }

private:
    std::atomic<qint64> m_next;
};
