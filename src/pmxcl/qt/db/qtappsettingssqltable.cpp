#include "qtappsettingssqltable.h"

#include "qtappdefaultlogger.h"
#include "sqlfailurelog.h"

namespace {

QString nameColumn() { return QStringLiteral("Name"); }
QString valueColumn() { return QStringLiteral("Value"); }

/// A null string would become NULL, which a primary key may contain many times, and which means a
/// value that was never written.
QString notNull(const QString &text) { return text.isNull() ? QLatin1String("") : text; }

} // namespace

QString QtAppSettingsSqlTable::sqlTableName() { return QStringLiteral("Settings"); }

QList<SqlTableManager::table_column> QtAppSettingsSqlTable::sqlTableColumns()
{
    const QString text = QStringLiteral("TEXT");
    return {{.name = nameColumn(), .type = text, .primaryKey = true},
            {.name = valueColumn(), .type = text}};
}

bool QtAppSettingsSqlTable::write(const QString &name, const QString &value)
{
    return replaceRecord({{nameColumn(), notNull(name)}, {valueColumn(), notNull(value)}});
}

bool QtAppSettingsSqlTable::remove(const QString &name)
{
    return removeRecordWithValues({{nameColumn(), notNull(name)}});
}

QHash<QString, QString> QtAppSettingsSqlTable::readAll()
{
    QHash<QString, QString> values;
    QSqlQuery rows = tableIterator({nameColumn(), valueColumn()});
    while (rows.isActive() && rows.next()) {
        if (!rows.isNull(1))
            values.insert(rows.value(0).toString(), rows.value(1).toString());
    }
    if (rows.lastError().isValid())
        setLastError(rows.lastError());
    // The error of creating the table is more helpful than "no such table".
    if (lastError().isValid() && setupError().isValid())
        setLastError(setupError());
    if (const QString failure = sqlFailureText(lastError());
        lastError().isValid() && SqlFailureLog::isNew(databaseFilePath(), failure))
        logLine(1,
                QStringLiteral("[%1:%2]: WARNING: DB TABLE ERROR: %3")
                    .arg(QStringLiteral(__FILE_NAME__), QString::number(__LINE__), failure));
    return values;
}
