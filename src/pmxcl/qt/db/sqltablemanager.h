#pragma once

#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <utility>

class AbstractSqlDatabaseManager;

/**
 * One table of a database: creates it, adds columns that it lacks, changes and reads its rows.
 *
 * Operations return whether they succeeded; lastError() has the reason when they did not. Names of
 * tables and columns, types, conditions and column defaults go into the SQL text as they are: they
 * come from the program only. Any thread that can use the database manager.
 */
class SqlTableManager {
public:
    struct table_column {
        QString name;
        /// An SQLite type name.
        QString type;
        bool primaryKey = false;
    };

    SqlTableManager(QString tableName, QSharedPointer<AbstractSqlDatabaseManager> db);
    virtual ~SqlTableManager() = default;
    Q_DISABLE_COPY_MOVE(SqlTableManager)

    QString databaseFilePath() const;

    /// The columns that the table should have; none by default.
    virtual QList<table_column> tableColumns() const;
    /// The names of the columns that a table has; empty when there is no such table. An error that
    /// is asked for is set, to an invalid one on success.
    static QStringList tableColumns(AbstractSqlDatabaseManager &db, const QString &tableName,
                                    QSqlError *error = nullptr);

    /// Leaves a table that exists as it is.
    bool createTable();
    bool addTableColumn(const QString &name, const QString &type, const QVariant &defaultValue);
    /// Adds the columns that an older version did not have.
    bool makeSureAllColumnsExists();

    /// Writes a row in place of the one with the same primary key.
    bool replaceRecord(const QList<std::pair<QString, QVariant>> &values);
    /// Removes the rows that have all these values; at least one must be given.
    bool removeRecordWithValues(const QMap<QString, QVariant> &values);
    bool clearTable();
    /// The rows that meet the condition, all without one. The query is active on success; it has
    /// to go before the connection does.
    QSqlQuery tableIterator(const QStringList &columns, const QString &condition = {});

    /// On success, keeps other threads from writing until endTransaction() is called on the same
    /// thread.
    bool beginTransaction();
    /// When committing fails, the transaction is rolled back.
    bool endTransaction(bool commit);

    /// Of the last operation; invalid when it succeeded.
    QSqlError lastError() const;
    void setLastError(const QSqlError &error);
    void clearLastError();

private:
    using Bindings = QList<std::pair<QString, QVariant>>;

    bool execute(const QString &sql, const Bindings &bindings = {});
    /// Executes what changes rows, and tells the database's listeners.
    bool change(const QString &sql, const Bindings &bindings);
    // They are called under the database's lock, and tell of a database that is not open.
    static QSqlQuery preparedQuery(AbstractSqlDatabaseManager &db, const QString &sql);
    static QSqlError executeQuery(AbstractSqlDatabaseManager &db, QSqlQuery &query,
                                  const Bindings &bindings);

    const QSharedPointer<AbstractSqlDatabaseManager> m_db;
    const QString m_tableName;
    // Guarded by the database's lock.
    QSqlError m_lastError;
    bool m_inTransaction = false;
    /// The transaction's last statement: preparing one costs more than executing it.
    QSqlQuery m_transactionQuery;
};
