#pragma once

#include <QDeadlineTimer>
#include <QSqlError>
#include <QString>

#include <chrono>

/**
 * SQLite's own busy timeout, after which a step is retried.
 *
 * SQLite polls a lock at increasing intervals, up to 100 ms, and a process that writes continuously
 * releases it for microseconds only. Retrying with a short timeout polls often, which avoids
 * starvation.
 */
constexpr std::chrono::milliseconds sqlBusyTimeout{10};
/// How long an operation waits at most, all its steps together: the main thread is blocked
/// meanwhile. At the end of the program it may be less (EndDeadline).
constexpr std::chrono::milliseconds sqlBusyWaitTime{500};

/// Whether another process has locked the database, so that the same step may succeed later.
bool isBusyError(const QSqlError &error);

/**
 * RAII: one time limit for all steps on this thread that wait for another process's lock on the
 * database. A nested object shares the limit of the outer one.
 *
 * After a timeout no thread waits for that file again until a step has found it unlocked and
 * succeeded.
 */
class SqlBusyWait {
public:
    /// Without a path, timeouts are not remembered.
    explicit SqlBusyWait(QString filePath = {});
    ~SqlBusyWait();
    Q_DISABLE_COPY_MOVE(SqlBusyWait)

    /// Runs a step, which returns its error, and repeats it while another process has locked the
    /// database and there is time left. Returns the last error; invalid on success.
    template <typename Step> QSqlError retry(Step step)
    {
        QSqlError error = step();
        // Some steps, such as turning on the write-ahead log, fail without waiting.
        while (isBusyError(error) && m_outermost.pause())
            error = step();
        m_outermost.note(error);
        return error;
    }

private:
    /// False when the time is up.
    bool pause();
    void note(const QSqlError &error);

    const QString m_filePath;
    SqlBusyWait &m_outermost;
    QDeadlineTimer m_deadline{QDeadlineTimer::Forever};
    bool m_timedOut = false;
    bool m_succeeded = false;
};

/// SqlBusyWait::retry() for a single step.
template <typename Step> QSqlError retryWhileBusy(Step step) { return SqlBusyWait().retry(step); }
