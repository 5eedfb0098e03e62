#include "appclientsettingswriter.h"

#include "appdataaccesshelper.h"
#include "appremotefrontendclientmodule.h"
#include "qtappabstractsettingsmanager.h"

#include <utility>

AppClientSettingsWriter::AppClientSettingsWriter(
    QSharedPointer<AppRemoteFrontendClientModule> remoteFrontendClientModule,
    QSharedPointer<QtAppAbstractSettingsManager> watched,
    QSharedPointer<AppDataAccessHelper> dataAccessHelper, QObject *parent)
    : QObject(parent), m_remoteFrontendClientModule(std::move(remoteFrontendClientModule)),
      m_watched(std::move(watched)), m_dataAccessHelper(std::move(dataAccessHelper))
{
    connect(m_watched.data(), &QtAppAbstractSettingsManager::valuesChanged, this,
            &AppClientSettingsWriter::onSettingsValuesChanged);
    connect(m_watched.data(), &QtAppAbstractSettingsManager::settingsResetToDefaults, this,
            &AppClientSettingsWriter::onSettingsResetToDefaults);
}

AppClientSettingsWriter::~AppClientSettingsWriter() = default;

void AppClientSettingsWriter::onSettingsValuesChanged(
    const QList<std::pair<QString, QString>> &changed, const QString &source)
{
    if (!m_remoteFrontendClientModule->isConnected())
        m_dataAccessHelper->settings()->setValues(changed, source);
}

void AppClientSettingsWriter::onSettingsResetToDefaults()
{
    if (!m_remoteFrontendClientModule->isConnected())
        m_dataAccessHelper->settings()->resetToDefaults(QString());
}
