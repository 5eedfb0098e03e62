#pragma once

#include "qtabstractcomplexmodule.h"

#include <QSharedPointer>

class AppClientModule;
class QtAppConfigBase;
class QtAppDelayedShutdownManager;
class QtAppPortableModeSupport;
class WeNativeHostModule;

/// The whole program: the client of the main application, then, once that is up, the browser's
/// side. Delays the shutdown until it has been taken down.
class WeNativeHostAppModule : public QtAbstractComplexModule {
    Q_OBJECT
public:
    /// The support object may be null.
    WeNativeHostAppModule(QSharedPointer<QtAppConfigBase> config,
                          QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                          QSharedPointer<QtAppDelayedShutdownManager> delayedShutdownManager,
                          QObject *parent = nullptr);

protected:
    void initializeSelfBefore(bool init) override;
    void initializeSelfAfter(bool init) override;
    void onModuleInitializeRunning(bool running, bool init) override;

private:
    QSharedPointer<AppClientModule> m_appClientModule;
    QSharedPointer<WeNativeHostModule> m_nativeHostModule;
    const QSharedPointer<QtAppConfigBase> m_config;
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
    const QSharedPointer<QtAppDelayedShutdownManager> m_delayedShutdownManager;
};
