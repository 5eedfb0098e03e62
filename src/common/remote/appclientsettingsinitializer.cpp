#include "appclientsettingsinitializer.h"

#include "appdataaccesshelper.h"
#include "appremotefrontendclientmodule.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "qtappsettingsinsqlmanager.h"
#include "sqlbusywait.h"
#include "vhipcsettings.h"

#include <utility>

AppClientSettingsInitializer::AppClientSettingsInitializer(
    const QSharedPointer<AppRemoteFrontendClientModule> &remoteFrontendClientModule,
    QSharedPointer<QtAppAbstractSettingsManager> target,
    QSharedPointer<AppDataAccessHelper> dataAccessHelper, QObject *parent)
    : QObject(parent), m_remoteFrontendClientModule(remoteFrontendClientModule),
      m_target(std::move(target)), m_dataAccessHelper(std::move(dataAccessHelper))
{
    const QSharedPointer<VhIpcSettings> settingsPart =
        m_remoteFrontendClientModule->vhIpcProcessor()->settingsPart();
    connect(settingsPart.data(), &VhIpcSettings::readyStateChanged, this,
            &AppClientSettingsInitializer::onVhIpcSettingsReadyStateChanged);
    onVhIpcSettingsReadyStateChanged(settingsPart->isReady());
}

void AppClientSettingsInitializer::initializeSettings()
{
    if (m_settingsInitialized && !m_readingFailed)
        return;
    const SqlBusyWait wait(m_dataAccessHelper->databaseFilePath());
    const QSharedPointer<QtAppAbstractSettingsManager> store = m_dataAccessHelper->settings();
    if (const auto inSql = store.objectCast<QtAppSettingsInSqlManager>()) {
        if (!inSql->isRead())
            inSql->storeUnstored();
        m_readingFailed = !inSql->isRead();
        if (m_readingFailed && m_settingsInitialized)
            return;
    }
    m_target->setAllDefaultValues(store->allDefaultValues());
    m_target->setAllValues(store->allValues(), QStringLiteral("AppClientSettingsInitializer"));
    setSettingsInitialized();
}

void AppClientSettingsInitializer::onVhIpcSettingsReadyStateChanged(bool ready)
{
    if (!ready)
        return;
    m_readingFailed = false;
    setSettingsInitialized();
}

void AppClientSettingsInitializer::setSettingsInitialized()
{
    if (std::exchange(m_settingsInitialized, true))
        return;
    Q_EMIT settingsInitialized();
}
