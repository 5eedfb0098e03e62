#pragma once

#include "qtabstractmodule.h"

#include <QLocale>
#include <QSharedPointer>
#include <QString>

#include <memory>
#include <optional>

class AppClientModule;
class AppLocalizationManager;
class ConsoleFlowControl;
class ConsoleMessagesReceiver;
class ConsoleMessagesSender;
class QtAppDelayedShutdownManager;
class ReadConsoleThread;
class WeNativeHostTasksProcessor;
class WebExtensionSettingsManager;

/// The browser's side of the host: the message channel, the dispatcher of tasks, the language.
class WeNativeHostModule : public QtAbstractModule {
    Q_OBJECT
public:
    /// The client module is up, and stays so as long as this one is.
    WeNativeHostModule(QSharedPointer<QtAppDelayedShutdownManager> delayedShutdownManager,
                       QSharedPointer<AppClientModule> appClientModule, QObject *parent = nullptr);
    ~WeNativeHostModule() override;

    void initialize(bool init) override;

    /// Switches to the language of the settings; if there is none, to the system's, or to the first
    /// of the user's languages for which there is a translation, else to English. Does nothing if
    /// the language is unchanged.
    Q_INVOKABLE void loadLocalization();

private:
    void bringUp();
    void takeDown();
    void followLocaleSetting();
    std::optional<QLocale> firstInstalledOfTheUser() const;

    QSharedPointer<AppLocalizationManager> m_localizationManager;
    QSharedPointer<ConsoleFlowControl> m_flowControl;
    QSharedPointer<ConsoleMessagesReceiver> m_receiver;
    QSharedPointer<ConsoleMessagesSender> m_sender;
    QSharedPointer<WeNativeHostTasksProcessor> m_tasksProcessor;
    std::unique_ptr<ReadConsoleThread> m_readThread;
    QSharedPointer<WebExtensionSettingsManager> m_settingsManager;
    const QSharedPointer<QtAppDelayedShutdownManager> m_delayedShutdownManager;
    const QSharedPointer<AppClientModule> m_appClientModule;
    /// The locale that was loaded last, as installed; empty before.
    QString m_loadedLocale;
};
