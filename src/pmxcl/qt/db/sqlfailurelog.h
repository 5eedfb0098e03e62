#pragma once

#include <QString>

class QSqlError;

/// The reason in SQLite's own words, which are English whatever the user's language.
QString sqlFailureText(const QSqlError &error);

/**
 * Which failures of database files this process has logged already.
 *
 * A store that is reopened for each change would otherwise log the same failure each time. Any
 * thread.
 */
class SqlFailureLog {
public:
    /// Whether this is the first failure of the file since forget().
    static bool isNew(const QString &filePath, const QString &failure);
    /// Call after the file has been written.
    static void forget(const QString &filePath);
};
