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
    // The driver's own text is in the user's language.
    return error.databaseText().isEmpty()
        ? QStringLiteral("error %1 of type %2").arg(error.nativeErrorCode()).arg(error.type())
        : error.databaseText();
}

bool SqlFailureLog::isNew(const QString &filePath, const QString &failure)
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
