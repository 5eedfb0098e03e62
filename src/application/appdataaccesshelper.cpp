#include "appdataaccesshelper.h"

#include "appsettingsmanager.h"
#include "multithreadedsqldatabasemanager.h"
#include "qtappportablemodesupport.h"
#include "qtobjectfactory.h"

#include <utility>

AppDataAccessHelper::AppDataAccessHelper(
    const QDir &dataDir, QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
    QObject *parent)
    : QObject(parent), m_dataDir(dataDir), m_portableModeSupport(std::move(portableModeSupport))
{
}

QString AppDataAccessHelper::databaseFilePath() const
{
    return m_dataDir.absoluteFilePath(QStringLiteral("db.sqlite"));
}

QSharedPointer<AbstractSqlDatabaseManager> AppDataAccessHelper::database() const
{
    QSharedPointer<AbstractSqlDatabaseManager> database = m_database.toStrongRef();
    if (!database) {
        database = qtCreateObject<MultiThreadedSqlDatabaseManager>(databaseFilePath(), QString());
        m_database = database;
    }
    return database;
}

QSharedPointer<QtAppAbstractSettingsManager> AppDataAccessHelper::settings() const
{
    QSharedPointer<QtAppAbstractSettingsManager> settings = m_settings.toStrongRef();
    if (!settings) {
        settings = qtCreateObject<AppSettingsManager>(database(), m_portableModeSupport);
        m_settings = settings;
    }
    return settings;
}
