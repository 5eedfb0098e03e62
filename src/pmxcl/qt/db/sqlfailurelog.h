#pragma once

#include <QString>

class QSqlError;

/// The reason in SQLite's own words, which are English whatever the user's language.
QString sqlFailureText(const QSqlError &error);

/**
 * The failures of database files that this process has logged.
 *
 * A store is opened again for each change unless it is kept, and would log the same failure each
 * time. Any thread.
 */
class SqlFailureLog {
public:
    /// True for the first time since the file's failures were forgotten.
    static bool isNews(const QString &filePath, const QString &failure);
    /// To be called when the file was written.
    static void forget(const QString &filePath);
};
