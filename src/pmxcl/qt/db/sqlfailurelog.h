#pragma once

#include <QString>

class QSqlError;

/// The reason in SQLite's own words, which are English whatever the user's language.
QString sqlFailureText(const QSqlError &error);

/**
 * What the process has logged about database files that fail.
 *
 * A store is opened anew for each change when nobody keeps it, and would tell of the same trouble
 * each time. Any thread.
 */
class SqlFailureLog {
public:
    /// True for the first time since the file's failures were forgotten.
    static bool isNews(const QString &filePath, const QString &failure);
    /// To be called when the file was written.
    static void forget(const QString &filePath);
};
