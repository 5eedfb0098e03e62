#include "sqlfailurelog.h"

#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QSet>
#include <QSqlError>

namespace {

struct LoggedFailures {
    QMutex mutex;
    QHash<QString, QSet<QString>> byFile;
};

LoggedFailures &loggedFailures()
{
    static LoggedFailures failures;
    return failures;
}

} // namespace

QString sqlFailureText(const QSqlError &error)
{
    return error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
}

bool SqlFailureLog::isNews(const QString &filePath, const QString &failure)
{
    LoggedFailures &logged = loggedFailures();
    const QMutexLocker locker(&logged.mutex);
    QSet<QString> &failures = logged.byFile[filePath];
    const auto known = failures.size();
    failures.insert(failure);
    return failures.size() != known;
}

void SqlFailureLog::forget(const QString &filePath)
{
    LoggedFailures &logged = loggedFailures();
    const QMutexLocker locker(&logged.mutex);
    logged.byFile.remove(filePath);
}
