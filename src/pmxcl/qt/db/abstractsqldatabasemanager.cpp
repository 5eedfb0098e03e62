#include "abstractsqldatabasemanager.h"

#include "qtappdefaultlogger.h"
#include "sqlbusywait.h"
#include "sqlfailurelog.h"

#include <QSqlError>

#include <mutex>

namespace {

void logCorrupt(int number, const QString &error)
{
    logLine(1,
            QStringLiteral("[AbstractSqlDatabaseManager]: WARNING: DB is corrupted. ERROR #%1: %2")
                .arg(QString::number(number), error));
}

/// Whether the error means that the file is corrupt.
bool tellsOfDamage(int number, const QSqlError &error)
{
    if (isBusyError(error)) {
        logLine(1,
                QStringLiteral("[AbstractSqlDatabaseManager]: cannot check the DB: %1")
                    .arg(sqlFailureText(error)));
        return false;
    }
    logCorrupt(number, sqlFailureText(error));
    return true;
}

} // namespace

AbstractSqlDatabaseManager::AbstractSqlDatabaseManager(QObject *parent) : QObject(parent) { }

void AbstractSqlDatabaseManager::notifyDatabaseAboutToChange() { Q_EMIT databaseAboutToChange(); }

void AbstractSqlDatabaseManager::notifyDatabaseChanged() { Q_EMIT databaseChanged(); }

bool AbstractSqlDatabaseManager::executeQuery(QSqlQuery &query)
{
    return !query.lastError().isValid() && !retryWhileBusy([&query] {
                                                query.exec();
                                                return query.lastError();
                                            }).isValid();
}

bool AbstractSqlDatabaseManager::checkIfCorrupt()
{
    const std::lock_guard locker(*this);
    if (QSqlQuery tables =
            createQuery(QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type='table' ;"));
        !executeQuery(tables))
        return tellsOfDamage(1, tables.lastError());
    QSqlQuery check = createQuery(QStringLiteral("pragma quick_check"));
    if (!executeQuery(check) || !check.next())
        return tellsOfDamage(2, check.lastError());
    const QString verdict = check.value(0).toString();
    if (verdict.compare(QStringLiteral("ok"), Qt::CaseInsensitive) == 0)
        return false;
    logCorrupt(3, verdict);
    while (check.next())
        logCorrupt(4, check.value(0).toString());
    return true;
}
