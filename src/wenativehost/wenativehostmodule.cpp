#include "wenativehostmodule.h"

#include "appclientmodule.h"
#include "appclientsettingsinitializer.h"
#include "applocalizationmanager.h"
#include "appsettings.h"
#include "consoleflowcontrol.h"
#include "consolemessagesreceiver.h"
#include "consolemessagessender.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappdefaultlogger.h"
#include "qtappdelayedshutdownmanager.h"
#include "qtobjectfactory.h"
#include "readconsolethread.h"
#include "webextensionsettingsmanager.h"
#include "wenativehosttasksprocessor.h"

#include <QCoreApplication>
#include <QLocale>
#include <QLoggingCategory>

#include <algorithm>

namespace {

/// The argument for a browser that frames messages with text lengths.
QString textLengthSwitch() { return QStringLiteral("--buggybrowser"); }

/// Keeps Qt's own messages out of this program's log.
void silenceQt()
{
    // New rules set every category back to its defaults, so they come first.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.network.ssl.warning=false"));
    QLoggingCategory *const category = QLoggingCategory::defaultCategory();
    for (const QtMsgType type : {QtDebugMsg, QtWarningMsg, QtCriticalMsg, QtFatalMsg})
        category->setEnabled(type, false);
}

} // namespace

WeNativeHostModule::WeNativeHostModule(
    QSharedPointer<QtAppDelayedShutdownManager> delayedShutdownManager,
    QSharedPointer<AppClientModule> appClientModule, QObject *parent)
    : QtAbstractModule(parent), m_delayedShutdownManager(std::move(delayedShutdownManager)),
      m_appClientModule(std::move(appClientModule))
{
}

WeNativeHostModule::~WeNativeHostModule() { takeDown(); }

void WeNativeHostModule::initialize(bool init)
{
    setInitializeRunning(true, init);
    if (init)
        bringUp();
    else
        takeDown();
    setInitializeRunning(false, init);
}

void WeNativeHostModule::bringUp()
{
    silenceQt();
    m_localizationManager = qtCreateObject<AppLocalizationManager>();
    loadLocalization();
    followLocaleSetting();

    m_flowControl = qtCreateObject<ConsoleFlowControl>();
    m_receiver = qtCreateObject<ConsoleMessagesReceiver>();
    // The log gives this name as the reason of the end.
    m_receiver->setObjectName(QStringLiteral("end of input"));
    m_receiver->setFlowControl(m_flowControl);
    if (QCoreApplication::arguments().contains(textLengthSwitch()))
        m_receiver->enableFlags(ConsoleMessagesReceiver::TextLength, true);
    m_readThread = std::make_unique<ReadConsoleThread>();
    m_readThread->setObjectName(QStringLiteral("Read console thread"));
    // First: the main thread, on another processor, would else find a thread that it must
    // terminate.
    connect(m_receiver.data(), &ConsoleMessagesReceiver::finished, m_readThread.get(),
            &ReadConsoleThread::endByItself, Qt::DirectConnection);
    connect(m_receiver.data(), &ConsoleMessagesReceiver::finished, m_delayedShutdownManager.data(),
            &QtAppDelayedShutdownManager::shutdownAppViaConnection);
    m_readThread->start(QThread::InheritPriority);
    if (!m_readThread->isRunning()) {
        logLine(1,
                QStringLiteral("[WeNativeHostModule]: ERROR: no thread can be had to read from"));
        setInitFailed(true);
        return;
    }
    m_receiver->moveToThread(m_readThread.get());

    m_sender = qtCreateObject<ConsoleMessagesSender>();
    m_sender->setFlowControl(m_flowControl);
    m_settingsManager = qtCreateObject<WebExtensionSettingsManager>(m_appClientModule);
    m_tasksProcessor = qtCreateObject<WeNativeHostTasksProcessor>(
        m_delayedShutdownManager, m_receiver.toWeakRef(), m_sender.toWeakRef(), m_settingsManager,
        m_appClientModule);
    // The dispatcher also takes QStrings; this receiver's bytes need no conversion.
    disconnect(m_receiver.data(), &ConsoleMessagesReceiver::gotMessage, m_tasksProcessor.data(),
               nullptr);
    connect(m_receiver.data(), &ConsoleMessagesReceiver::gotBytes, m_tasksProcessor.data(),
            &WeNativeHostTasksProcessor::onConsoleGotBytes);
    connect(m_localizationManager.data(), &AppLocalizationManager::translationsLoaded,
            m_tasksProcessor.data(), &WeNativeHostTasksProcessor::translationsLoaded);
    m_receiver->start();
}

void WeNativeHostModule::takeDown()
{
    // Tasks that wait for the application's settings are handled with the local ones.
    if (m_settingsManager)
        m_settingsManager->stopWaiting();
    m_tasksProcessor.reset();
    m_settingsManager.reset();
    m_sender.reset();
    m_readThread.reset();
    m_receiver.reset();
    m_flowControl.reset();
    m_localizationManager.reset();
    m_loadedLocale.clear();
}

void WeNativeHostModule::loadLocalization()
{
    if (!m_localizationManager)
        return;
    const QString name =
        m_appClientModule->settingsManager()->value(toString(AppSettings::LocaleName));
    QLocale wanted(QLocale::English);
    if (!name.isEmpty())
        wanted = QLocale(name);
    else if (const auto ofTheUser = firstInstalledOfTheUser())
        wanted = *ofTheUser;
    else if (m_loadedLocale.isEmpty())
        return;

    const QString installed = m_localizationManager->findInstalledTranslation(wanted);
    const QString chosen = installed.isEmpty() ? wanted.name() : installed;
    if (chosen == m_loadedLocale)
        return;
    m_loadedLocale = chosen;
    m_localizationManager->load(wanted);
}

std::optional<QLocale> WeNativeHostModule::firstInstalledOfTheUser() const
{
    const QLocale system = QLocale::system();
    QList<QLocale> candidates{system};
    const QStringList names = system.uiLanguages();
    for (const QString &name : names)
        candidates.append(QLocale(name));
    const auto installed =
        std::find_if(candidates.cbegin(), candidates.cend(), [this](const QLocale &locale) {
            return m_localizationManager->isTranslationInstalled(locale);
        });
    return installed == candidates.cend() ? std::nullopt : std::optional(*installed);
}

// At start-up the settings are rarely known: the application sends them after the connection.
void WeNativeHostModule::followLocaleSetting()
{
    using Settings = QtAppAbstractSettingsManager;
    connect(m_appClientModule->settingsInitializer().data(),
            &AppClientSettingsInitializer::settingsInitialized, this,
            &WeNativeHostModule::loadLocalization);
    const Settings *const settings = m_appClientModule->settingsManager().data();
    connect(settings, &Settings::allValuesChanged, this, &WeNativeHostModule::loadLocalization);
    connect(settings, &Settings::settingsResetToDefaults, this,
            &WeNativeHostModule::loadLocalization);
    connect(settings, &Settings::valuesChanged, this, [this](const Settings::ValuesList &changed) {
        const QString key = toString(AppSettings::LocaleName);
        if (std::any_of(changed.cbegin(), changed.cend(),
                        [&key](const auto &pair) { return pair.first == key; }))
            loadLocalization();
    });
}
