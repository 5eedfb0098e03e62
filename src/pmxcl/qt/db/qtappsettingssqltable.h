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
    /// Rows without a value, which older tables have, are left out. A failure is logged once, told
    /// by lastError(), and leaves what could be read before it.
    QHash<QString, QString> readAll();
};
