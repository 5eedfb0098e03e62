#pragma once

#include <QDir>

/// Where the program keeps its files: by default in the user's standard locations. Nothing is
/// created; the folders may not exist yet.
class QtAppConfigBase {
public:
    QtAppConfigBase() = default;
    virtual ~QtAppConfigBase() = default;
    Q_DISABLE_COPY_MOVE(QtAppConfigBase)

    /// QStandardPaths::AppDataLocation.
    virtual QDir dataDir() const;
    /// For data that does not roam with the user: QStandardPaths::AppLocalDataLocation.
    virtual QDir localDataDir() const;
    /// "logs" in localDataDir().
    virtual QDir logsDir() const;
};
