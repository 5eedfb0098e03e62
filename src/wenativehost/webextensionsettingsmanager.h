#pragma once

#include "webextensionsettings.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <utility>

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
    /// The module must be up as long as this object is used.
    explicit WebExtensionSettingsManager(QSharedPointer<AppClientModule> appClientModule,
                                         QObject *parent = nullptr);
    ~WebExtensionSettingsManager() override;

    /// The defaults until initialized.
    const WebExtensionSettings &settings() const { return m_settings; }
    /// Never goes back to false.
    bool isInitialized() const { return m_initialized; }
    /// Does not wait for the application's settings any longer: has the local ones loaded.
    void initialize();

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

public Q_SLOTS:
    void onSettingsInitialized();
    void onSettingsAllValuesChanged(const QString &origin);
    void onSettingsValuesChanged(const QList<std::pair<QString, QString>> &values,
                                 const QString &origin);

private:
    void readFromApplication();
    void writeToApplication() const;

    const QSharedPointer<AppClientModule> m_appClientModule;
    WebExtensionSettings m_settings;
    bool m_initialized = false;
};
