#pragma once

#include <QDeadlineTimer>
#include <QSqlError>
#include <QString>

#include <chrono>

/**
 * For how long SQLite itself waits while another process has the database, before a step is
 * repeated.
 *
 * SQLite looks at the lock less and less often, every 100 ms in the end, and a process that writes
 * continuously releases it for microseconds only. Short waits poll often, which avoids starvation.
 */
constexpr std::chrono::milliseconds sqlBusyTimeout{10};
/// For how long an operation waits, all its steps together: the main thread answers nothing then.
/// At the end of the program it may be less (EndDeadline).
constexpr std::chrono::milliseconds sqlBusyWaitTime{500};

/// Whether another process has the database, so that the same step may go well later.
bool isBusyError(const QSqlError &error);

/**
 * One wait for another process that has the database, for all steps that are taken on this thread
 * while this object lives. Within another's life it is part of that one.
 *
 * A file whose lock timed out is not waited for again, by any thread, until a step goes well
 * that found it free.
 */
class SqlBusyWait {
public:
    /// Without a path nothing is remembered.
    explicit SqlBusyWait(QString filePath = {});
    ~SqlBusyWait();
    Q_DISABLE_COPY_MOVE(SqlBusyWait)

    /// Runs a step, which returns its error, again and again while another process has the
    /// database and there is time left. Returns the last error; invalid on success.
    template <typename Step> QSqlError retry(Step step)
    {
        QSqlError error = step();
        // Some steps, such as turning on the write-ahead log, are refused without any waiting.
        while (isBusyError(error) && m_outermost.pause())
            error = step();
        m_outermost.note(error);
        return error;
    }

private:
    /// False when the time is over.
    bool pause();
    void note(const QSqlError &error);

    const QString m_filePath;
    SqlBusyWait &m_outermost;
    QDeadlineTimer m_deadline{QDeadlineTimer::Forever};
    bool m_inVain = false;
    bool m_wentWell = false;
};

/// SqlBusyWait::retry() for a step that may stand alone.
template <typename Step> QSqlError retryWhileBusy(Step step) { return SqlBusyWait().retry(step); }
