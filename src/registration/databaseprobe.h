#pragma once

#include <QString>

/// A database file that exists, tried without changing it.
struct DatabaseProbe {
    explicit DatabaseProbe(const QString &path);

    /// Why it cannot be opened for reading and writing, or is no database; else empty.
    QString openFailure;
    /// Somebody else keeps it from being written.
    bool isLocked = false;
    /// What SQLite finds wrong with it; else empty.
    QString damage;
};
