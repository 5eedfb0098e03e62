#include "databaseprobe.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace {

QString connectionName() { return QStringLiteral("doctor"); }

/// Primary result codes of SQLite (https://www.sqlite.org/rescode.html).
constexpr int sqliteBusy = 5;
constexpr int sqliteLocked = 6;

bool isBusy(const QSqlError &error)
{
    const int code = error.nativeErrorCode().toInt() & 0xff;
    return code == sqliteBusy || code == sqliteLocked;
}

void examine(QSqlDatabase &database, DatabaseProbe &probe)
{
    // A healthy writer releases the lock within milliseconds.
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000"));
    if (!database.open()) {
        probe.openFailure = database.lastError().text();
        return;
    }
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("BEGIN IMMEDIATE"))) {
        probe.isLocked = isBusy(query.lastError());
        if (!probe.isLocked)
            probe.openFailure = query.lastError().text();
        return;
    }
    const bool isChecked = query.exec(QStringLiteral("PRAGMA quick_check(1)")) && query.next();
    const QString verdict = isChecked ? query.value(0).toString() : query.lastError().text();
    if (verdict != u"ok")
        probe.damage = verdict.simplified();
    query.finish();
    query.exec(QStringLiteral("ROLLBACK"));
}

} // namespace

DatabaseProbe::DatabaseProbe(const QString &path)
{
    // SQLite would silently open it read-only.
    if (QFile file(path); !file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
        openFailure = file.errorString();
        return;
    }
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName());
        database.setDatabaseName(path);
        examine(database, *this);
        database.close();
    }
    QSqlDatabase::removeDatabase(connectionName());
}
