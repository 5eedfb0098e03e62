#include "webextensionsettingsmanager.h"

#include "appclientmodule.h"
#include "appclientsettingsinitializer.h"
#include "appsettings.h"
#include "qtappabstractsettingsmanager.h"

#include <string>

namespace {

const QString &ownOrigin()
{
    static const QString origin = QStringLiteral("WebExtensionSettingsManager");
    return origin;
}

/// What is no number of 32 bits counts as 0.
int number(const QtAppAbstractSettingsManager &settings, AppSettings::Setting setting)
{
    return settings.value(toString(setting)).toInt();
}

bool flag(const QtAppAbstractSettingsManager &settings, AppSettings::Setting setting)
{
    return number(settings, setting) != 0;
}

std::string text(const QtAppAbstractSettingsManager &settings, AppSettings::Setting setting)
{
    return settings.value(toString(setting)).toStdString();
}

QString flagText(bool value) { return value ? QStringLiteral("1") : QStringLiteral("0"); }

} // namespace

WebExtensionSettingsManager::WebExtensionSettingsManager(
    QSharedPointer<AppClientModule> appClientModule, QObject *parent)
    : QObject(parent), m_appClientModule(std::move(appClientModule))
{
    const auto initializer = m_appClientModule->settingsInitializer();
    if (initializer->isSettingsInitialized())
        onSettingsInitialized();
    else
        connect(initializer.data(), &AppClientSettingsInitializer::settingsInitialized, this,
                &WebExtensionSettingsManager::onSettingsInitialized);
}

WebExtensionSettingsManager::~WebExtensionSettingsManager() = default;

void WebExtensionSettingsManager::initialize()
{
    if (!m_initialized)
        m_appClientModule->settingsInitializer()->initializeSettings();
}

void WebExtensionSettingsManager::setSettings(const WebExtensionSettings &settings,
                                              bool byExtension)
{
    if (settings == m_settings)
        return;
    m_settings = settings;
    serializeSettings(false);
    Q_EMIT settingsChanged(byExtension);
}

void WebExtensionSettingsManager::updateSettings(bool notify)
{
    const WebExtensionSettings before = m_settings;
    serializeSettings(true);
    if (notify && !(m_settings == before))
        Q_EMIT settingsChanged(false);
}

void WebExtensionSettingsManager::serializeSettings(bool fromApplication)
{
    if (fromApplication)
        readFromApplication();
    else
        writeToApplication();
}

void WebExtensionSettingsManager::onSettingsInitialized()
{
    if (m_initialized)
        return;
    const auto settings = m_appClientModule->settingsManager();
    connect(settings.data(), &QtAppAbstractSettingsManager::allValuesChanged, this,
            &WebExtensionSettingsManager::onSettingsAllValuesChanged);
    connect(settings.data(), &QtAppAbstractSettingsManager::settingsResetToDefaults, this,
            &WebExtensionSettingsManager::onSettingsAllValuesChanged);
    connect(settings.data(), &QtAppAbstractSettingsManager::valuesChanged, this,
            &WebExtensionSettingsManager::onSettingsValuesChanged);
    updateSettings(false);
    m_initialized = true;
    Q_EMIT initialized();
}

void WebExtensionSettingsManager::onSettingsAllValuesChanged(const QString &origin)
{
    if (origin != ownOrigin())
        updateSettings(true);
}

void WebExtensionSettingsManager::onSettingsValuesChanged(
    const QList<std::pair<QString, QString>> &, const QString &origin)
{
    if (origin != ownOrigin())
        updateSettings(true);
}

void WebExtensionSettingsManager::readFromApplication()
{
    using namespace AppSettings;
    const auto manager = m_appClientModule->settingsManager();
    const QtAppAbstractSettingsManager &settings = *manager;
    WebExtensionBrowserMonitorSettings &monitor = m_settings.browser.monitor;

    monitor.enable = flag(settings, WbInterceptDownloads);
    monitor.allowDownload = flag(settings, WbAbortedInterceptedDownloadForwardToBrowser);
    monitor.skipSmallerThan = flag(settings, WbDontInterceptTooSmallDownloads)
        ? number(settings, WbDownloadsTooSmallSizeValue)
        : 0;
    monitor.skipExtensions = flag(settings, WbDontInterceptDownloadsWithUnwantedExtensions)
        ? text(settings, WbDownloadsUnwantedExtensionsList)
        : std::string();
    monitor.skipServersEnabled = flag(settings, WbDontInterceptDownloadsFromUnwantedHosts);
    monitor.skipServers = text(settings, WbDownloadsUnwantedHostsList);
    monitor.skipIfKeyPressed = flag(settings, WbDontInterceptDownloadsIfKeyIsPressed);
}

void WebExtensionSettingsManager::writeToApplication() const
{
    using namespace AppSettings;
    const WebExtensionBrowserMonitorSettings &monitor = m_settings.browser.monitor;
    QList<std::pair<QString, QString>> values;
    const auto add = [&values](Setting setting, const QString &value) {
        values.emplaceBack(toString(setting), value);
    };

    add(WbInterceptDownloads, flagText(monitor.enable));
    add(WbAbortedInterceptedDownloadForwardToBrowser, flagText(monitor.allowDownload));
    add(WbDontInterceptTooSmallDownloads, flagText(monitor.skipSmallerThan != 0));
    if (monitor.skipSmallerThan != 0)
        add(WbDownloadsTooSmallSizeValue, QString::number(monitor.skipSmallerThan));
    add(WbDontInterceptDownloadsWithUnwantedExtensions, flagText(!monitor.skipExtensions.empty()));
    if (!monitor.skipExtensions.empty())
        add(WbDownloadsUnwantedExtensionsList, QString::fromStdString(monitor.skipExtensions));
    add(WbDontInterceptDownloadsFromUnwantedHosts, flagText(monitor.skipServersEnabled));
    if (monitor.skipServersEnabled)
        add(WbDownloadsUnwantedHostsList, QString::fromStdString(monitor.skipServers));
    add(WbDontInterceptDownloadsIfKeyIsPressed, flagText(monitor.skipIfKeyPressed));
    m_appClientModule->settingsManager()->setValues(values, ownOrigin());
}
