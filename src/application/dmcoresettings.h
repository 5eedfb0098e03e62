#pragma once

#include <QObject>
#include <QString>

/// The settings of the download engine.
namespace DmCoreSettings {
Q_NAMESPACE

/// Values are texts: booleans are "0" and "1", numbers are decimal. Names are stored and sent, so
/// neither they nor their order ever change: see toString().
enum Setting {
    DefaultDownloadPath,
    FixedDownloadPath,
    DownloadPathDependsOnFileType,
    DownloadPathDependsOnSourceUrl,
    TumSettingsFirstValue,
    MaxDownloadSpeed = TumSettingsFirstValue,
    MaxUploadSpeed,
    MaxConnections,
    MaxConnectionsPerServer,
    MaxDownloads,
    MaxURatio,
    TumSettingsLastValue = MaxURatio,
    MaxAdditionalQueryInfoDownloads,
    MaxAdditionalSmallDownloads,
    MaxAdditionalDownloadsIfTotalSpeedIsTooSlow,
    TrafficLimitsCompliantMode,
    PartialDownloadFileSuffix,
    CurrentTrafficUsageMode,
    RestoreCurrentTrafficUsageModeAtStartup,
    AllowToUseMobileNetworks,
    AllowToUseRoamingNetworks,
    TakeLastModifiedDateFromServer,
    AutoRemoveDownloadsWithMissingFiles,
    PreventOsAutoSleepIfDownloadsRunning,
    PreventOsAutoSleepIfDownloadsRunning_IgnoreFinished,
    PreventOsAutoSleepIfDownloadsRunning_IgnoreDownloadsWithResumeSupport,
    PreventOsAutoSleepIfDownloadsRunning_IncludingScheduled,
    AutoRemoveFinishedDownloads,
    AutoRemoveFinishedDownloads_KeepDays,
    AntivirusUid,
    AntivirusPath,
    AntivirusArgs,
    AutoLaunchAntivirusForFinishedDownloads,
    AutoRestartFinishedDownloadIfRemoteResourceChanged,
    ExistingFileReaction,
    AutoRetryFailedDownloads,
    DisablePostFinishedTasksOnBattery,
    DisablePostFinishedTasks,
    BatteryMinimumPowerLevelToRunDownloads,
    DeleteLocalServiceFilesWhenDownloadFinished,
    BtSessionPort,
    BtEnableTrackerList,
    BtTrackerList,
    BtEncryptionPolicy,
    BtEnableDht,
    BtEnableUtp,
    BtEnableLsd,
    BtEnablePex,
    LaunchExternalAppOnDownloadCompletion,
    LaunchExternalAppOnDownloadCompletion_AppPath,
    LaunchExternalAppOnDownloadCompletion_AppArgsTemplate,
    EnableSchedulerForNewDownloads,
    ScheduleForNewDownloads,
    DetectUnwantedDownloadErrors,
    UseSystemDefaultUserAgent,
    /// The number of settings.
    LastSettingValuePlus1,
};
Q_ENUM_NS(Setting)
} // namespace DmCoreSettings

/**
 * The setting's key: the enumerator's name, from QMetaEnum. Empty for a number that is no
 * enumerator.
 *
 * Two numbers have two names each: the first and the last limit of the traffic modes. The key is
 * the name that is declared first, as in QMetaEnum::valueToKey(): 4 has the key
 * "TumSettingsFirstValue", not "MaxDownloadSpeed", and 9 has "MaxURatio". The main application
 * derives its keys in the same way; with another name there would be two settings.
 */
QString toString(DmCoreSettings::Setting setting);
