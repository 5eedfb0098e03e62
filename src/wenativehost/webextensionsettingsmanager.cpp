#include "webextensionsettingsmanager.h"

#include "appclientmodule.h"
#include "appclientsettingsinitializer.h"
#include "appremotefrontendclientmodule.h"
#include "qtappabstractsettingsmanager.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace {

const QString &ownOrigin()
{
    static const QString origin = QStringLiteral("WebExtensionSettingsManager");
    return origin;
}

QString settingText(const QtAppAbstractSettingsManager &settings, const char *name)
{
    return settings.value(QLatin1String(name));
}

void read(const QString &text, bool &value) { value = text.toInt() != 0; }
/// Anything but a 32-bit number counts as 0.
void read(const QString &text, std::int64_t &value) { value = text.toInt(); }
void read(const QString &text, std::string &value) { value = text.toStdString(); }

/// Whether the text is a number that read() does not take, of any size.
bool isUnshown(const QString &text, std::int64_t)
{
    bool isTaken = false;
    text.toInt(&isTaken);
    const auto digits = QStringView(text).sliced(text.startsWith(u'-') ? 1 : 0);
    return !isTaken && !digits.isEmpty()
        && std::all_of(digits.begin(), digits.end(), [](QChar c) { return c.isDigit(); });
}
template <typename Value> bool isUnshown(const QString &, const Value &) { return false; }

QString written(bool value) { return value ? QStringLiteral("1") : QStringLiteral("0"); }
QString written(std::int64_t value) { return QString::number(value); }
QString written(const std::string &value) { return QString::fromStdString(value); }

/// Calls the function for each member that is stored in a setting of the application.
template <typename Function> void forEachHeldMember(Function function)
{
    const auto callWithHeld = [&function](const auto &member) {
        using Value =
            std::remove_cvref_t<decltype(std::declval<WebExtensionBrowserMonitorSettings>()
                                         .*member.value)>;
        if constexpr (!std::is_base_of_v<pmxSerializable, Value>) {
            if (member.setting)
                function(member);
        }
    };
    std::apply([&](const auto &...member) { (callWithHeld(member), ...); },
               WebExtensionBrowserMonitorSettings::members());
}

} // namespace

WebExtensionSettingsManager::WebExtensionSettingsManager(
    QSharedPointer<AppClientModule> appClientModule, QObject *parent, QtClock &clock)
    : QObject(parent), m_appClientModule(std::move(appClientModule)),
      m_waitTimer(clock.createTimer())
{
    connect(m_waitTimer.get(), &QtSingleShotTimer::timeout, this,
            &WebExtensionSettingsManager::loadStored);
    connect(m_appClientModule->remoteFrontendClientModule().data(),
            &AppRemoteFrontendClientModule::connectedStateChanged, this, [this](bool connected) {
                if (!connected)
                    stopWaiting();
            });
    connect(m_appClientModule->settingsWriter().data(), &AppClientSettingsWriter::outcomeChanged,
            this, &WebExtensionSettingsManager::storeOutcomeChanged);
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
    if (m_initialized || !m_appClientModule->isConnected())
        loadStored();
    else if (!m_waitTimer->isActive())
        m_waitTimer->start(applicationTimeoutMs);
}

void WebExtensionSettingsManager::whenInitialized(std::function<void()> callback)
{
    if (m_initialized) {
        initialize();
        callback();
        return;
    }
    m_waiting.push_back(std::move(callback));
    initialize();
}

void WebExtensionSettingsManager::stopWaiting()
{
    if (m_waitTimer->isActive())
        loadStored();
}

void WebExtensionSettingsManager::loadStored()
{
    m_waitTimer->stop();
    m_appClientModule->settingsInitializer()->initializeSettings();
}

void WebExtensionSettingsManager::setSettings(const WebExtensionSettings &settings,
                                              bool byExtension)
{
    if (settings == m_settings)
        return;
    forEachHeldMember([&](const auto &member) {
        if (settings.browser.monitor.*member.value != m_settings.browser.monitor.*member.value)
            m_unshownNumbers.erase(member.setting);
    });
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
    m_waitTimer->stop();
    m_initialized = true;
    // Posts first: the answer to a later query must contain what was posted.
    for (const auto &callback : std::exchange(m_waiting, {}))
        callback();
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
    const auto settings = m_appClientModule->settingsManager();
    WebExtensionBrowserMonitorSettings &monitor = m_settings.browser.monitor;
    forEachHeldMember([&](const auto &member) {
        const bool isOn =
            !member.switchSetting || settingText(*settings, member.switchSetting).toInt() != 0;
        const QString text = settingText(*settings, member.setting);
        read(isOn ? text : QString(), monitor.*member.value);
        if (isUnshown(text, monitor.*member.value))
            m_unshownNumbers.insert(member.setting);
        else
            m_unshownNumbers.erase(member.setting);
    });
}

void WebExtensionSettingsManager::writeToApplication() const
{
    const WebExtensionBrowserMonitorSettings &monitor = m_settings.browser.monitor;
    QList<std::pair<QString, QString>> values;
    const auto add = [&values](const char *name, const QString &value) {
        values.emplaceBack(QLatin1String(name), value);
    };
    forEachHeldMember([&](const auto &member) {
        const auto &value = monitor.*member.value;
        const bool isOn = value != std::remove_cvref_t<decltype(value)>();
        if (m_unshownNumbers.contains(member.setting))
            return;
        if (member.switchSetting)
            add(member.switchSetting, written(isOn));
        if ((!member.switchSetting || isOn) && (!member.writtenWith || monitor.*member.writtenWith))
            add(member.setting, written(value));
    });
    m_appClientModule->settingsManager()->setValues(values, ownOrigin());
}
