#pragma once

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <utility>

class AppDataAccessHelper;
class AppRemoteFrontendClientModule;
class QtAppAbstractSettingsManager;

/// Writes changes of the client's settings to the local store while the main application, which
/// owns the settings, is not connected. Belongs to one thread.
class AppClientSettingsWriter : public QObject {
    Q_OBJECT
public:
    AppClientSettingsWriter(
        QSharedPointer<AppRemoteFrontendClientModule> remoteFrontendClientModule,
        QSharedPointer<QtAppAbstractSettingsManager> watched,
        QSharedPointer<AppDataAccessHelper> dataAccessHelper, QObject *parent = nullptr);
    ~AppClientSettingsWriter() override;

private Q_SLOTS:
    void onSettingsValuesChanged(const QList<std::pair<QString, QString>> &changed,
                                 const QString &source);
    void onSettingsResetToDefaults();

private:
    const QSharedPointer<AppRemoteFrontendClientModule> m_remoteFrontendClientModule;
    const QSharedPointer<QtAppAbstractSettingsManager> m_watched;
    const QSharedPointer<AppDataAccessHelper> m_dataAccessHelper;
};
