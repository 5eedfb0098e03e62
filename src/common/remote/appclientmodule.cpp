#include "appclientmodule.h"

#include "abstractincomingdownloadsprocessor.h"
#include "abstractjsonrequestsmanager.h"
#include "appclientsettingsinitializer.h"
#include "appclientsettingswriter.h"
#include "appdataaccesshelper.h"
#include "applink.h"
#include "appserverlauncher.h"
#include "browseractivitymonitor.h"
#include "qtabstractserveraddress.h"
#include "qtappconfigbase.h"
#include "qtappportablemodesupport.h"
#include "qtappsettingsinmemorymanager.h"
#include "qtlocalsocket.h"
#include "qtobjectfactory.h"
#include "uniqueint64idgen.h"

#include <utility>

namespace {

constexpr bool launchServerAutomatically = true;

} // namespace

AppClientModule::AppClientModule(QSharedPointer<QtAppConfigBase> config,
                                 QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                                 QObject *parent, QtClock &clock)
    : QtAbstractComplexModule(parent), m_config(std::move(config)),
      m_portableModeSupport(std::move(portableModeSupport)), m_clock(clock)
{
}

void AppClientModule::setHandOver(AppRemoteFrontendClientModule::HandOver handOver)
{
    m_handOver = std::move(handOver);
}

bool AppClientModule::isConnected() const
{
    return m_remoteFrontendClientModule && m_remoteFrontendClientModule->isConnected();
}

bool AppClientModule::appDoesNotExist() const { return !AppServerLauncher::serverBinaryExists(); }

QSharedPointer<QtAppAbstractSettingsManager> AppClientModule::settingsManager() const
{
    return m_settingsManager;
}

QSharedPointer<AppRemoteFrontendClientModule> AppClientModule::remoteFrontendClientModule() const
{
    return m_remoteFrontendClientModule;
}

QSharedPointer<AppClientSettingsInitializer> AppClientModule::settingsInitializer() const
{
    return m_settingsInitializer;
}

QSharedPointer<AppClientSettingsWriter> AppClientModule::settingsWriter() const
{
    return m_settingsWriter;
}

QSharedPointer<AbstractIncomingDownloadsProcessor>
AppClientModule::incomingDownloadsProcessor() const
{
    return m_remoteFrontendClientModule ? m_remoteFrontendClientModule->incomingDownloadsProcessor()
                                        : nullptr;
}

QSharedPointer<AbstractJsonRequestsManager> AppClientModule::jsonRequestsManager() const
{
    return m_remoteFrontendClientModule ? m_remoteFrontendClientModule->jsonRequestsManager()
                                        : nullptr;
}

QSharedPointer<BrowserActivityMonitor> AppClientModule::browserActivityMonitor() const
{
    return m_browserActivityMonitor;
}

void AppClientModule::initializeSelfBefore(bool init)
{
    if (init) {
        m_idGen = QSharedPointer<UniqueInt64IdGen>::create();
        m_dataAccessHelper =
            qtCreateObject<AppDataAccessHelper>(m_config->dataDir(), m_portableModeSupport);
        m_settingsManager = qtCreateObject<QtAppSettingsInMemoryManager>();
        m_remoteFrontendClientModule = qtCreateObject<AppRemoteFrontendClientModule>(
            createAppClientSocket(), appLinkVersion, appLinkUsesCbor,
            QtAbstractServerAddress(appServerName()), m_settingsManager, m_idGen,
            launchServerAutomatically, nullptr, m_clock);
        m_remoteFrontendClientModule->setHandOver(m_handOver);
        addModule(m_remoteFrontendClientModule.data());
    }
    onInitializeSelfBeforeFinished(init);
}

void AppClientModule::initializeSelfAfter(bool init)
{
    if (init) {
        m_settingsInitializer = qtCreateObject<AppClientSettingsInitializer>(
            m_remoteFrontendClientModule, m_settingsManager, m_dataAccessHelper);
        m_browserActivityMonitor = qtCreateObject<BrowserActivityMonitor>();
        m_settingsWriter = qtCreateObject<AppClientSettingsWriter>(
            m_remoteFrontendClientModule, m_settingsManager, m_dataAccessHelper, nullptr, m_clock);
    } else {
        clearModules();
        m_browserActivityMonitor.reset();
        m_settingsWriter.reset();
        m_settingsInitializer.reset();
        m_remoteFrontendClientModule.reset();
        m_settingsManager.reset();
        m_dataAccessHelper.reset();
        m_idGen.reset();
    }
    onInitializeSelfAfterFinished(init);
}
