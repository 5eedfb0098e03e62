#pragma once

#include <QDeadlineTimer>
#include <QSqlError>
#include <QThread>

#include <chrono>

/**
 * For how long SQLite itself waits while another process writes, before a step is repeated.
 *
 * SQLite looks at the lock less and less often, every 100 ms in the end, and a process that writes
 * again and again leaves it for microseconds only. Short waits look often, so that nobody starves.
 */
constexpr std::chrono::milliseconds sqlBusyTimeout{50};
/// For how long a step is repeated.
constexpr std::chrono::seconds sqlBusyRetryTime{5};

/// Whether another process has the database, so that the same step may go well later.
bool isBusyError(const QSqlError &error);

/// Runs a step, which returns its error, again and again while another process has the database.
/// Returns the last error; invalid on success.
template <typename Step> QSqlError retryWhileBusy(Step step)
{
    QSqlError error = step();
    if (!isBusyError(error))
        return error;
    const QDeadlineTimer deadline(sqlBusyRetryTime);
    do {
        // Some steps, such as turning on the write-ahead log, are refused without any waiting.
        QThread::msleep(1);
        error = step();
    } while (isBusyError(error) && !deadline.hasExpired());
    return error;
}
