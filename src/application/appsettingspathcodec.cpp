#include "appsettingspathcodec.h"

#include "appsettings.h"
#include "dmcoresettings.h"
#include "qtappportablemodesupport.h"

#include <utility>

QSharedPointer<const AppSettingsPathCodec>
AppSettingsPathCodec::create(const QSharedPointer<QtAppPortableModeSupport> &support)
{
    return support ? QSharedPointer<const AppSettingsPathCodec>::create(support) : nullptr;
}

AppSettingsPathCodec::AppSettingsPathCodec(QSharedPointer<QtAppPortableModeSupport> support)
    : m_support(std::move(support)),
      m_pathKeys{toString(DmCoreSettings::DefaultDownloadPath),
                 toString(DmCoreSettings::FixedDownloadPath),
                 toString(DmCoreSettings::AntivirusPath),
                 toString(DmCoreSettings::LaunchExternalAppOnDownloadCompletion_AppPath),
                 toString(AppSettings::TorrentsFolder)}
{
}

QString AppSettingsPathCodec::encode(const QString &key, const QString &value) const
{
    return m_pathKeys.contains(key) ? m_support->encodePath(value) : value;
}

QString AppSettingsPathCodec::decode(const QString &key, const QString &stored) const
{
    return m_pathKeys.contains(key) ? m_support->decodePath(stored) : stored;
}
