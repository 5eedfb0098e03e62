#include "sqltablemanager.h"

#include "abstractsqldatabasemanager.h"
#include "sqlbusywait.h"

#include <QSqlDatabase>

#include <mutex>
#include <utility>

SqlTableManager::SqlTableManager(QString tableName, QSharedPointer<AbstractSqlDatabaseManager> db)
    : m_db(std::move(db)), m_tableName(std::move(tableName))
{
}

QString SqlTableManager::databaseFilePath() const { return m_db->databaseFilePath(); }

QList<SqlTableManager::table_column> SqlTableManager::tableColumns() const { return {}; }

QStringList SqlTableManager::tableColumns(AbstractSqlDatabaseManager &db, const QString &tableName,
                                          QSqlError *error)
{
    QStringList names;
    const std::lock_guard locker(db);
    QSqlQuery query = preparedQuery(db, QStringLiteral("PRAGMA table_info(%1)").arg(tableName));
    const QSqlError failure = executeQuery(db, query, {});
    if (error)
        *error = failure;
    while (query.isActive() && query.next())
        names += query.value(QStringLiteral("name")).toString();
    return names;
}

bool SqlTableManager::createTable()
{
    QStringList columns;
    QStringList primaryKeys;
    for (const table_column &column : tableColumns()) {
        columns += column.name + u' ' + column.type;
        if (column.primaryKey)
            primaryKeys += column.name;
    }
    if (!primaryKeys.isEmpty())
        columns += QStringLiteral("PRIMARY KEY (%1)").arg(primaryKeys.join(u", "));
    return execute(
        QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (%2)").arg(m_tableName, columns.join(u", ")));
}

bool SqlTableManager::addTableColumn(const QString &name, const QString &type,
                                     const QVariant &defaultValue)
{
    QString sql = QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3").arg(m_tableName, name, type);
    if (!defaultValue.isNull())
        sql += QStringLiteral(" DEFAULT %1").arg(defaultValue.toString());
    return execute(sql + u';');
}

bool SqlTableManager::makeSureAllColumnsExists()
{
    QSqlError error;
    const QStringList existing = tableColumns(*m_db, m_tableName, &error);
    setLastError(error);
    if (error.isValid())
        return false;
    for (const table_column &column : tableColumns()) {
        // Another process may have added the column since the check.
        if (!existing.contains(column.name) && !addTableColumn(column.name, column.type, {})
            && !tableColumns(*m_db, m_tableName).contains(column.name))
            return false;
    }
    clearLastError();
    return true;
}

bool SqlTableManager::replaceRecord(const QList<std::pair<QString, QVariant>> &values)
{
    QStringList columns;
    QStringList placeholders;
    for (const auto &[column, value] : values) {
        columns += column;
        placeholders += u':' + column;
    }
    return change(QStringLiteral("REPLACE INTO %1 (%2) VALUES (%3)")
                      .arg(m_tableName, columns.join(u", "), placeholders.join(u", ")),
                  values);
}

bool SqlTableManager::removeRecordWithValues(const QMap<QString, QVariant> &values)
{
    QStringList conditions;
    Bindings bindings;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        conditions += QStringLiteral("%1=:%1").arg(it.key());
        bindings.emplace_back(it.key(), it.value());
    }
    return change(
        QStringLiteral("DELETE FROM %1 WHERE %2").arg(m_tableName, conditions.join(u" AND ")),
        bindings);
}

bool SqlTableManager::clearTable()
{
    return change(QStringLiteral("DELETE FROM %1;").arg(m_tableName), {});
}

QSqlQuery SqlTableManager::tableIterator(const QStringList &columns, const QString &condition)
{
    QString sql = QStringLiteral("SELECT %2 FROM %1").arg(m_tableName, columns.join(u", "));
    if (!condition.isEmpty())
        sql += QStringLiteral(" WHERE %1").arg(condition);
    const std::lock_guard locker(*m_db);
    QSqlQuery query = preparedQuery(*m_db, sql);
    m_lastError = executeQuery(*m_db, query, {});
    return query;
}

bool SqlTableManager::beginTransaction()
{
    m_db->lock();
    QSqlDatabase db = m_db->database();
    if (db.transaction()) {
        m_inTransaction = true;
        clearLastError();
        return true;
    }
    setLastError(db.lastError());
    m_db->unlock();
    return false;
}

bool SqlTableManager::endTransaction(bool commit)
{
    m_inTransaction = false;
    m_transactionQuery = QSqlQuery();
    QSqlDatabase db = m_db->database();
    const QSqlError error = retryWhileBusy([&db, commit] {
        return (commit ? db.commit() : db.rollback()) ? QSqlError() : db.lastError();
    });
    setLastError(error);
    if (error.isValid())
        db.rollback();
    m_db->unlock();
    return !error.isValid();
}

QSqlError SqlTableManager::lastError() const
{
    const std::lock_guard locker(*m_db);
    return m_lastError;
}

void SqlTableManager::setLastError(const QSqlError &error)
{
    const std::lock_guard locker(*m_db);
    m_lastError = error;
}

void SqlTableManager::clearLastError() { setLastError(QSqlError()); }

bool SqlTableManager::execute(const QString &sql, const Bindings &bindings)
{
    const std::lock_guard locker(*m_db);
    QSqlQuery query = m_inTransaction && m_transactionQuery.lastQuery() == sql
        ? std::exchange(m_transactionQuery, QSqlQuery())
        : preparedQuery(*m_db, sql);
    m_lastError = executeQuery(*m_db, query, bindings);
    if (m_inTransaction && !m_lastError.isValid())
        m_transactionQuery = std::move(query);
    return !m_lastError.isValid();
}

bool SqlTableManager::change(const QString &sql, const Bindings &bindings)
{
    m_db->notifyDatabaseAboutToChange();
    const bool changed = execute(sql, bindings);
    if (changed)
        m_db->notifyDatabaseChanged();
    return changed;
}

QSqlQuery SqlTableManager::preparedQuery(AbstractSqlDatabaseManager &db, const QString &sql)
{
    if (!db.databaseOpened())
        return QSqlQuery();
    QSqlQuery query = db.createQuery(sql);
    query.setForwardOnly(true);
    return query;
}

QSqlError SqlTableManager::executeQuery(AbstractSqlDatabaseManager &db, QSqlQuery &query,
                                        const Bindings &bindings)
{
    if (!db.databaseOpened())
        return db.database().lastError();
    for (const auto &[column, value] : bindings)
        query.bindValue(u':' + column, value);
    return AbstractSqlDatabaseManager::executeQuery(query) ? QSqlError() : query.lastError();
}
