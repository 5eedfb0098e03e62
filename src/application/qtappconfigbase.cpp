#include "qtappconfigbase.h"

#include <QStandardPaths>

QDir QtAppConfigBase::dataDir() const
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
}

QDir QtAppConfigBase::localDataDir() const
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
}

QDir QtAppConfigBase::logsDir() const
{
    return QDir(localDataDir().absoluteFilePath(QStringLiteral("logs")));
}
