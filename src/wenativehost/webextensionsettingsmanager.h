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
#include <utility>
#include <vector>

class AppClientModule;

/**
 * The extension's options, kept in step with the application's settings in both directions.
 *
 * What one side wrote is not reported back to it. Options without an application setting (menu
 * entries, videos, locale) live here only. Belongs to the main thread.
 */
class WebExtensionSettingsManager : public QObject {
    Q_OBJECT
public:
    /// For how long a connected application is given to send its settings. It answers within
    /// milliseconds unless it hangs.
    static constexpr int waitForApplicationMs = 1000;

    /// The module must be up as long as this object is used.
    explicit WebExtensionSettingsManager(QSharedPointer<AppClientModule> appClientModule,
                                         QObject *parent = nullptr,
                                         QtClock &clock = QtClock::system());
    ~WebExtensionSettingsManager() override;

    /// The defaults until initialized.
    const WebExtensionSettings &settings() const { return m_settings; }
    /// Never goes back to false.
    bool isInitialized() const { return m_initialized; }
    /// Sees to it that the settings become known: those of a connected application, which has
    /// waitForApplicationMs to send them, else those of the local store.
    void initialize();
    /// Calls back, at once or later, when the settings are known, and has them initialized. In the
    /// order of the calls.
    void whenInitialized(std::function<void()> callback);
    /// If it waits for the application, does so no longer.
    void stopWaiting();

    /// Takes the options and writes them to the application's settings; nothing when they are equal
    /// to those that hold.
    void setSettings(const WebExtensionSettings &settings, bool byExtension);
    /// Reads the application's settings. With notify, tells of a change.
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
    /// Nothing when the settings are known, unless reading the store failed.
    void loadStored();
    void readFromApplication();
    void writeToApplication() const;

    const QSharedPointer<AppClientModule> m_appClientModule;
    const std::unique_ptr<QtSingleShotTimer> m_waitTimer;
    WebExtensionSettings m_settings;
    bool m_initialized = false;
    std::vector<std::function<void()>> m_waiting;
    /// The application's size limit is beyond what can be shown, and was not changed here.
    bool m_hasForeignSizeLimit = false;
};
