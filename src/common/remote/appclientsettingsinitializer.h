#pragma once

#include <QObject>
#include <QSharedPointer>

class AppDataAccessHelper;
class AppRemoteFrontendClientModule;
class QtAppAbstractSettingsManager;

/// Tracks whether the client's settings are available: once the main application has sent them, or
/// once they were read from the local store, whichever comes first. Belongs to one thread.
class AppClientSettingsInitializer : public QObject {
    Q_OBJECT
public:
    /// The module must be up. "target" is the client's settings manager.
    AppClientSettingsInitializer(
        const QSharedPointer<AppRemoteFrontendClientModule> &remoteFrontendClientModule,
        QSharedPointer<QtAppAbstractSettingsManager> target,
        QSharedPointer<AppDataAccessHelper> dataAccessHelper, QObject *parent = nullptr);

    /// Never becomes false again.
    bool isSettingsInitialized() const { return m_settingsInitialized; }
    /// Marks the settings as available, and emits the signal the first time.
    void setSettingsInitialized();

public Q_SLOTS:
    /// Loads the target from the local store. Does nothing once the settings are available, unless
    /// they are only defaults because the store could not be read: then it retries.
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
