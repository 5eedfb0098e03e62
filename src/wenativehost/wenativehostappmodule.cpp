#include "wenativehostappmodule.h"

#include "appclientmodule.h"
#include "linksuccessor.h"
#include "qtappconfigbase.h"
#include "qtappdelayedshutdownmanager.h"
#include "qtappportablemodesupport.h"
#include "qtobjectfactory.h"
#include "wenativehostmodule.h"

#include <utility>

WeNativeHostAppModule::WeNativeHostAppModule(
    QSharedPointer<QtAppConfigBase> config,
    QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
    QSharedPointer<QtAppDelayedShutdownManager> delayedShutdownManager, QObject *parent)
    : QtAbstractComplexModule(parent), m_config(std::move(config)),
      m_portableModeSupport(std::move(portableModeSupport)),
      m_delayedShutdownManager(std::move(delayedShutdownManager))
{
}

void WeNativeHostAppModule::initializeSelfBefore(bool init)
{
    if (init) {
        m_delayedShutdownManager->registerObject(this, true);
        m_appClientModule = qtCreateObject<AppClientModule>(m_config, m_portableModeSupport);
        m_appClientModule->setHandOver(&LinkSuccessor::start);
        addModule(m_appClientModule.data());
    }
    onInitializeSelfBeforeFinished(init);
}

void WeNativeHostAppModule::onModuleInitializeRunning(bool running, bool init)
{
    const QtAbstractModule *const child = currentModule();
    if (!running && init && child && child == m_appClientModule.data() && !child->initFailed(true)
        && !child->needExit()) {
        m_nativeHostModule =
            qtCreateObject<WeNativeHostModule>(m_delayedShutdownManager, m_appClientModule);
        addModule(m_nativeHostModule.data());
    }
    QtAbstractComplexModule::onModuleInitializeRunning(running, init);
}

void WeNativeHostAppModule::initializeSelfAfter(bool init)
{
    if (!init) {
        clearModules();
        m_nativeHostModule.reset();
        m_appClientModule.reset();
        m_delayedShutdownManager->registerObject(this, false);
    }
    onInitializeSelfAfterFinished(init);
}
