#include "abstractsqldatabasemanager.h"

#include "qtappdefaultlogger.h"
#include "sqlbusyretry.h"

#include <QSqlError>

#include <mutex>

namespace {

void logCorrupt(int number, const QString &error)
{
    logLine(1,
            QStringLiteral("[AbstractSqlDatabaseManager]: WARNING: DB is corrupted. ERROR #%1: %2")
                .arg(QString::number(number), error));
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
        !executeQuery(tables)) {
        logCorrupt(1, tables.lastError().text());
        return true;
    }
    QSqlQuery check = createQuery(QStringLiteral("pragma quick_check"));
    if (!executeQuery(check) || !check.next()) {
        logCorrupt(2, check.lastError().text());
        return true;
    }
    const QString verdict = check.value(0).toString();
    if (verdict.compare(QStringLiteral("ok"), Qt::CaseInsensitive) == 0)
        return false;
    logCorrupt(3, verdict);
    while (check.next())
        logCorrupt(4, check.value(0).toString());
    return true;
}
