#pragma once

#include <QString>

/// Checks an existing database file without changing it.
struct DatabaseProbe {
    explicit DatabaseProbe(const QString &path);

    /// Why it cannot be opened for reading and writing, or is not a database; else empty.
    QString openFailure;
    /// Another process holds a lock on it.
    bool isLocked = false;
    /// The corruption that SQLite found; else empty.
    QString damage;
};
