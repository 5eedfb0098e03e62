#pragma once

#include "sqltablemanager.h"

#include <utility>

/**
 * A table described by T, with the static functions sqlTableName() and sqlTableColumns(). The
 * constructor creates the table or brings it up to date.
 */
template <typename T> class SqlEasyTableManager : public SqlTableManager {
public:
    explicit SqlEasyTableManager(QSharedPointer<AbstractSqlDatabaseManager> db)
        : SqlTableManager(T::sqlTableName(), std::move(db))
    {
        if (createTable())
            makeSureAllColumnsExists();
        m_setupError = lastError();
    }

    /// Why the table could not be created or brought up to date; invalid when it could.
    QSqlError setupError() const { return m_setupError; }

    using SqlTableManager::tableColumns;
    QList<table_column> tableColumns() const final { return T::sqlTableColumns(); }

private:
    QSqlError m_setupError;
};
