#include "appclientsettingsinitializer.h"

#include "appdataaccesshelper.h"
#include "appremotefrontendclientmodule.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "qtappabstractsettingsmanager.h"
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

AppClientSettingsInitializer::~AppClientSettingsInitializer() = default;

void AppClientSettingsInitializer::initializeSettings()
{
    if (m_settingsInitialized)
        return;
    const QSharedPointer<QtAppAbstractSettingsManager> store = m_dataAccessHelper->settings();
    m_target->setAllDefaultValues(store->allDefaultValues());
    m_target->setAllValues(store->allValues(), QStringLiteral("AppClientSettingsInitializer"));
    setSettingsInitialized();
}

void AppClientSettingsInitializer::onVhIpcSettingsReadyStateChanged(bool ready)
{
    if (ready)
        setSettingsInitialized();
}

void AppClientSettingsInitializer::setSettingsInitialized()
{
    if (std::exchange(m_settingsInitialized, true))
        return;
    Q_EMIT settingsInitialized();
}
