#include "appsettingsmanager.h"

#include "appsettings.h"
#include "appsettingspathcodec.h"
#include "dmcoresettings.h"
#include "qtappportablemodesupport.h"
#include "systemdefaultdownloadlocation.h"

#include <utility>

namespace {

/// Sites whose downloads are made by the page itself or are bound to the browser's session, so that
/// no other program can fetch them.
QString hostsWhoseDownloadsTheBrowserKeeps()
{
    return QStringLiteral("mega.nz mega.io wetransfer.com swisstransfer.com "
                          "mail-attachment.googleusercontent.com attachments.office.net "
                          "mail.proton.me web.telegram.org");
}

/// Days of the week (one bit each), and the minutes of the day between which downloads run.
QString defaultSchedule()
{
    const int everyDay = 0b1111111;
    const int from = 6 * 60;
    const int until = 10 * 60;
    return QStringLiteral("%1:%2:%3")
        .arg(QString::number(everyDay), QString::number(from), QString::number(until));
}

} // namespace

AppSettingsManager::AppSettingsManager(const QSharedPointer<AbstractSqlDatabaseManager> &db,
                                       QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                                       QObject *parent)
    : QtAppSettingsInSqlManager(db, AppSettingsPathCodec::create(portableModeSupport), parent),
      m_portableModeSupport(std::move(portableModeSupport))
{
    setupDefaults();
}

QStringList AppSettingsManager::forbiddenToChangeByRemote()
{
    return {toString(DmCoreSettings::AntivirusUid),
            toString(DmCoreSettings::AntivirusPath),
            toString(DmCoreSettings::AntivirusArgs),
            toString(DmCoreSettings::LaunchExternalAppOnDownloadCompletion),
            toString(DmCoreSettings::LaunchExternalAppOnDownloadCompletion_AppPath),
            toString(DmCoreSettings::LaunchExternalAppOnDownloadCompletion_AppArgsTemplate)};
}

void AppSettingsManager::setupDefaults()
{
    const QString on = QStringLiteral("1");
    const QString off = QStringLiteral("0");
    const QString downloadedFilePath = QStringLiteral("%path%");
    QString defaultDownloadPath = systemDefaultDownloadLocation();
    if (m_portableModeSupport)
        defaultDownloadPath = m_portableModeSupport->encodePath(defaultDownloadPath);

    QtAppSettingsInSqlManager::setAllDefaultValues({
        {toString(AppSettings::NetworkProxyMode), QString::number(AppSettings::SystemProxy)},
        {toString(DmCoreSettings::DefaultDownloadPath), defaultDownloadPath},
        {toString(DmCoreSettings::DownloadPathDependsOnFileType), off},
        {toString(DmCoreSettings::DownloadPathDependsOnSourceUrl), off},
        {toString(AppSettings::CheckUpdatesAutomatically), on},
        {toString(AppSettings::InstallUpdatesAutomatically), on},
        {toString(DmCoreSettings::PartialDownloadFileSuffix), QStringLiteral("kovdownload")},
        {toString(DmCoreSettings::TakeLastModifiedDateFromServer), off},
        {toString(AppSettings::SortBy), QStringLiteral("1")},
        {toString(AppSettings::SortAscendingOrder), off},
        {toString(DmCoreSettings::AllowToUseMobileNetworks), on},
        {toString(DmCoreSettings::AllowToUseRoamingNetworks), off},
        {toString(AppSettings::WbInterceptDownloads), on},
        {toString(AppSettings::WbDontInterceptTooSmallDownloads), off},
        {toString(AppSettings::WbDownloadsTooSmallSizeValue), QStringLiteral("1048576")}, // bytes
        {toString(AppSettings::WbDontInterceptDownloadsWithUnwantedExtensions), on},
        {toString(AppSettings::WbDownloadsUnwantedExtensionsList), QStringLiteral("pls m3u")},
        {toString(AppSettings::WbDontInterceptDownloadsFromUnwantedHosts), on},
        {toString(AppSettings::WbDownloadsUnwantedHostsList), hostsWhoseDownloadsTheBrowserKeeps()},
        {toString(AppSettings::WbAbortedInterceptedDownloadForwardToBrowser), on},
        {toString(AppSettings::WbDontInterceptDownloadsIfKeyIsPressed), on},
        {toString(DmCoreSettings::AutoRemoveDownloadsWithMissingFiles), on},
        {toString(AppSettings::NotifyOfAddedDownloads), on},
        {toString(AppSettings::NotifyOfFinishedDownloads), on},
        {toString(AppSettings::NotifyOfDownloadsWhenAppInactiveOnly), on},
        {toString(DmCoreSettings::PreventOsAutoSleepIfDownloadsRunning), on},
        {toString(DmCoreSettings::PreventOsAutoSleepIfDownloadsRunning_IgnoreFinished), on},
        {toString(
             DmCoreSettings::PreventOsAutoSleepIfDownloadsRunning_IgnoreDownloadsWithResumeSupport),
         off},
        {toString(DmCoreSettings::PreventOsAutoSleepIfDownloadsRunning_IncludingScheduled), on},
        {toString(AppSettings::SilentModeForNewDownloads), off},
        {toString(DmCoreSettings::AutoRemoveFinishedDownloads), off},
        {toString(DmCoreSettings::AutoRemoveFinishedDownloads_KeepDays), QStringLiteral("0")},
        {toString(DmCoreSettings::AntivirusArgs), downloadedFilePath},
        {toString(DmCoreSettings::AutoLaunchAntivirusForFinishedDownloads), off},
        {toString(DmCoreSettings::ExistingFileReaction), QStringLiteral("1")},
        {toString(DmCoreSettings::AutoRetryFailedDownloads), on},
        {toString(DmCoreSettings::DisablePostFinishedTasks), off},
        {toString(DmCoreSettings::DisablePostFinishedTasksOnBattery), on},
        {toString(DmCoreSettings::BatteryMinimumPowerLevelToRunDownloads),
         QStringLiteral("15")}, // percent
        {toString(AppSettings::ShowTotalUploadSpeedInDock), on},
        {toString(DmCoreSettings::DeleteLocalServiceFilesWhenDownloadFinished), on},
        {toString(AppSettings::LocaleName), QLatin1String("")}, // follows the system
        {toString(AppSettings::UpdatePluginsAutomatically), on},
        {toString(AppSettings::IndicateDownloadAndUploadUsingTrayIcon), on},
        {toString(AppSettings::ShowSpecialOffers), on},
        {toString(AppSettings::EnableRemoteAccess), off},
        {toString(AppSettings::DontUseNetworkProxyForRemoteAccess), off},
        {toString(AppSettings::DontUseNetworkProxyForListeningIncomingRemoteAccessConnections), on},
        {toString(DmCoreSettings::BtSessionPort), QStringLiteral("0")},
        {toString(DmCoreSettings::BtEnableTrackerList), off},
        {toString(DmCoreSettings::BtTrackerList), QLatin1String("")},
        {toString(DmCoreSettings::BtEncryptionPolicy), QStringLiteral("0")},
        {toString(DmCoreSettings::BtEnableDht), on},
        {toString(DmCoreSettings::BtEnablePex), on},
        {toString(DmCoreSettings::BtEnableUtp), on},
        {toString(DmCoreSettings::BtEnableLsd), on},
        {toString(DmCoreSettings::LaunchExternalAppOnDownloadCompletion), off},
        {toString(DmCoreSettings::LaunchExternalAppOnDownloadCompletion_AppArgsTemplate),
         downloadedFilePath},
        {toString(DmCoreSettings::EnableSchedulerForNewDownloads), off},
        {toString(DmCoreSettings::ScheduleForNewDownloads), defaultSchedule()},
        {toString(DmCoreSettings::DetectUnwantedDownloadErrors), on},
        {toString(DmCoreSettings::MaxAdditionalQueryInfoDownloads), QStringLiteral("3")},
        {toString(DmCoreSettings::MaxAdditionalSmallDownloads), QStringLiteral("1")},
        {toString(DmCoreSettings::MaxAdditionalDownloadsIfTotalSpeedIsTooSlow),
         QStringLiteral("1")},
        {toString(DmCoreSettings::UseSystemDefaultUserAgent), on},
        {toString(AppSettings::HideDockIcon), off},
    });
}
