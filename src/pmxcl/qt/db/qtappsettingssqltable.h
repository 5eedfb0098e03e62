#pragma once

#include "sqleasytablemanager.h"

#include <QHash>

/// The table "Settings": a value for each name.
class QtAppSettingsSqlTable : public SqlEasyTableManager<QtAppSettingsSqlTable> {
public:
    using SqlEasyTableManager::SqlEasyTableManager;

    static QString sqlTableName();
    static QList<table_column> sqlTableColumns();

    bool write(const QString &name, const QString &value);
    bool remove(const QString &name);
    /// Rows without a value, which older tables have, are skipped. After a failure, which is logged
    /// once and kept in lastError(), returns what could be read before it.
    QHash<QString, QString> readAll();
};
