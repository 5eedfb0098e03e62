#pragma once

#include <QObject>
#include <QSharedPointer>

class AppDataAccessHelper;
class AppRemoteFrontendClientModule;
class QtAppAbstractSettingsManager;

/// Knows whether the client's settings are there: once the main application has sent them, or once
/// they were read from the local store, whichever comes first. Belongs to one thread.
class AppClientSettingsInitializer : public QObject {
    Q_OBJECT
public:
    /// The module must be up. "target" is the client's settings manager.
    AppClientSettingsInitializer(
        const QSharedPointer<AppRemoteFrontendClientModule> &remoteFrontendClientModule,
        QSharedPointer<QtAppAbstractSettingsManager> target,
        QSharedPointer<AppDataAccessHelper> dataAccessHelper, QObject *parent = nullptr);

    /// Never goes back to false.
    bool isSettingsInitialized() const { return m_settingsInitialized; }
    /// Tells that the settings are there; nothing when they were before.
    void setSettingsInitialized();

public Q_SLOTS:
    /// Fills the target from the local store. Nothing once the settings are there, unless they are
    /// no more than defaults because the store could not be read: it is tried again then.
    void initializeSettings();
    void onVhIpcSettingsReadyStateChanged(bool ready);

Q_SIGNALS:
    /// Once.
    void settingsInitialized();

private:
    const QSharedPointer<AppRemoteFrontendClientModule> m_remoteFrontendClientModule;
    const QSharedPointer<QtAppAbstractSettingsManager> m_target;
    const QSharedPointer<AppDataAccessHelper> m_dataAccessHelper;
    bool m_settingsInitialized = false;
    bool m_readingFailed = false;
};
