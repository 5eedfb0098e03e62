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
 * One table of a database: creates it, adds missing columns, changes and reads its rows.
 *
 * Operations return whether they succeeded; else lastError() has the reason. Names of tables and
 * columns, types, conditions and column defaults are inserted into the SQL text verbatim: they must
 * be the program's own. Any thread that can use the database manager.
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

    /// The required columns; none by default.
    virtual QList<table_column> tableColumns() const;
    /// The names of a table's columns; empty if there is no such table. The error, if not null, is
    /// set, to an invalid one on success.
    static QStringList tableColumns(AbstractSqlDatabaseManager &db, const QString &tableName,
                                    QSqlError *error = nullptr);

    /// Does not change an existing table.
    bool createTable();
    bool addTableColumn(const QString &name, const QString &type, const QVariant &defaultValue);
    /// Adds the columns that an older version did not have.
    bool makeSureAllColumnsExists();

    /// Inserts a row, replacing one with the same primary key.
    bool replaceRecord(const QList<std::pair<QString, QVariant>> &values);
    /// Removes the rows that have all these values; at least one must be given.
    bool removeRecordWithValues(const QMap<QString, QVariant> &values);
    bool clearTable();
    /// The rows that meet the condition; all rows if it is empty. On success the query is active;
    /// it must be destroyed before the connection is closed.
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
    /// Executes a statement that changes rows, and emits the database's signals.
    bool change(const QString &sql, const Bindings &bindings);
    // Called under the database's lock; they fail if the database is not open.
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
