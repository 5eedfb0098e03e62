#pragma once

#include "appremotefrontendclientmodule.h"
#include "qtabstractcomplexmodule.h"
#include "qtclock.h"

#include <QSharedPointer>

class AbstractIncomingDownloadsProcessor;
class AbstractJsonRequestsManager;
class AppClientSettingsInitializer;
class AppClientSettingsWriter;
class AppDataAccessHelper;
class BrowserActivityMonitor;
class QtAppAbstractSettingsManager;
class QtAppConfigBase;
class QtAppPortableModeSupport;
class UniqueInt64IdGen;

/**
 * The services of a client of the main application: the link to it, its settings, the local data.
 *
 * Bringing it up starts to connect, but does not wait for the connection and opens no database.
 * Belongs to one thread.
 */
class AppClientModule : public QtAbstractComplexModule {
    Q_OBJECT
public:
    /// The support object may be null.
    AppClientModule(QSharedPointer<QtAppConfigBase> config,
                    QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                    QObject *parent = nullptr, QtClock &clock = QtClock::system());

    /// See AppRemoteFrontendClientModule; call it before the module is brought up.
    void setHandOver(AppRemoteFrontendClientModule::HandOver handOver);

    bool isConnected() const;
    /// Whether the main application's executable is missing.
    bool appDoesNotExist() const;

    /// These are null while the module is down.
    QSharedPointer<AppDataAccessHelper> dataAccessHelper() const { return m_dataAccessHelper; }
    /// In memory; in sync with the application's settings while the link is up.
    QSharedPointer<QtAppAbstractSettingsManager> settingsManager() const;
    QSharedPointer<AppRemoteFrontendClientModule> remoteFrontendClientModule() const;
    QSharedPointer<AppClientSettingsInitializer> settingsInitializer() const;
    QSharedPointer<AppClientSettingsWriter> settingsWriter() const;
    QSharedPointer<AbstractIncomingDownloadsProcessor> incomingDownloadsProcessor() const;
    QSharedPointer<AbstractJsonRequestsManager> jsonRequestsManager() const;
    QSharedPointer<BrowserActivityMonitor> browserActivityMonitor() const;

protected:
    void initializeSelfBefore(bool init) override;
    void initializeSelfAfter(bool init) override;

private:
    const QSharedPointer<QtAppConfigBase> m_config;
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
    QtClock &m_clock;
    AppRemoteFrontendClientModule::HandOver m_handOver;
    QSharedPointer<UniqueInt64IdGen> m_idGen;
    QSharedPointer<AppDataAccessHelper> m_dataAccessHelper;
    QSharedPointer<QtAppAbstractSettingsManager> m_settingsManager;
    QSharedPointer<AppRemoteFrontendClientModule> m_remoteFrontendClientModule;
    QSharedPointer<AppClientSettingsInitializer> m_settingsInitializer;
    QSharedPointer<AppClientSettingsWriter> m_settingsWriter;
    QSharedPointer<BrowserActivityMonitor> m_browserActivityMonitor;
};
