#pragma once

#include "appclientsettingswriter.h"
#include "qtclock.h"
#include "webextensionsettings.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <functional>
#include <memory>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

class AppClientModule;

/**
 * The extension's options, kept in sync with the application's settings in both directions.
 *
 * Changes are not echoed to the side that made them. Options without an application setting (menu
 * entries, videos, locale) are stored only here. Belongs to the main thread.
 */
class WebExtensionSettingsManager : public QObject {
    Q_OBJECT
public:
    /// The timeout for a connected application to send its settings. It answers within milliseconds
    /// unless it hangs.
    static constexpr int applicationTimeoutMs = 1000;

    /// The module must be up as long as this object is used.
    explicit WebExtensionSettingsManager(QSharedPointer<AppClientModule> appClientModule,
                                         QObject *parent = nullptr,
                                         QtClock &clock = QtClock::system());
    ~WebExtensionSettingsManager() override;

    /// The defaults until initialized.
    const WebExtensionSettings &settings() const { return m_settings; }
    /// Never becomes false again.
    bool isInitialized() const { return m_initialized; }
    /// Loads the settings: from a connected application, within applicationTimeoutMs, else from the
    /// local store.
    void initialize();
    /// Starts loading the settings if necessary, and calls back, at once or later, when they are
    /// known. In the order of the calls.
    void whenInitialized(std::function<void()> callback);
    /// Stops waiting for the application, if it does.
    void stopWaiting();

    /// Applies the options and writes them to the application's settings; does nothing if they are
    /// equal to the current ones.
    void setSettings(const WebExtensionSettings &settings, bool byExtension);
    /// Reads the application's settings. With notify, emits a signal for a change.
    void updateSettings(bool notify);
    /// Reads the application's settings, or writes them. A size limit or a list that is switched
    /// off is not written, so that the application keeps its last value.
    void serializeSettings(bool fromApplication);

Q_SIGNALS:
    void initialized();
    void settingsChanged(bool byExtension);
    /// Whether changes are in the local store, while they have to be.
    void storeOutcomeChanged(AppClientSettingsWriter::Outcome outcome);

public Q_SLOTS:
    void onSettingsInitialized();
    void onSettingsAllValuesChanged(const QString &origin);
    void onSettingsValuesChanged(const QList<std::pair<QString, QString>> &values,
                                 const QString &origin);

private:
    /// Does nothing if the settings are known, unless reading the store failed.
    void loadStored();
    void readFromApplication();
    void writeToApplication() const;

    const QSharedPointer<AppClientModule> m_appClientModule;
    const std::unique_ptr<QtSingleShotTimer> m_waitTimer;
    WebExtensionSettings m_settings;
    bool m_initialized = false;
    std::vector<std::function<void()>> m_waiting;
    /// The application's settings whose numbers are beyond what can be shown, and were not changed
    /// here: they are not written.
    std::set<std::string_view> m_unshownNumbers;
};
