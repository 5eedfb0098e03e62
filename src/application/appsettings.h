#pragma once

#include <QObject>
#include <QString>

/// The application's settings, among them those of the browser integration ("Wb...").
namespace AppSettings {
Q_NAMESPACE

/// Values are texts: booleans are "0" and "1", numbers are decimal. Names are stored and sent, so
/// they never change.
enum Setting {
    NetworkProxyMode,
    Http_ProxyHost,
    Http_ProxyPort,
    Http_ProxyUser,
    Http_ProxyPwd,
    Https_ProxyHost,
    Https_ProxyPort,
    Https_ProxyUser,
    Https_ProxyPwd,
    Ftp_ProxyHost,
    Ftp_ProxyPort,
    Ftp_ProxyUser,
    Ftp_ProxyPwd,
    Socks5_ProxyHost,
    Socks5_ProxyPort,
    Socks5_ProxyUser,
    Socks5_ProxyPwd,
    CheckUpdatesAutomatically,
    InstallUpdatesAutomatically,
    WbInterceptDownloads,
    WbDontInterceptTooSmallDownloads,
    WbDownloadsTooSmallSizeValue,
    WbDontInterceptDownloadsWithUnwantedExtensions,
    WbDownloadsUnwantedExtensionsList,
    WbDontInterceptDownloadsFromUnwantedHosts,
    WbDownloadsUnwantedHostsList,
    WbAbortedInterceptedDownloadForwardToBrowser,
    WbDontInterceptDownloadsIfKeyIsPressed,
    NotifyOfAddedDownloads,
    NotifyOfFinishedDownloads,
    NotifyOfFailedDownloads,
    NotifyOfDownloadsWhenAppInactiveOnly,
    EnableSoundNotifications,
    SilentModeForNewDownloads,
    LocaleName,
    AndroidActivitySystemLocaleName,
    SortBy,
    SortAscendingOrder,
    ShowTotalUploadSpeedInDock,
    IndicateDownloadAndUploadUsingTrayIcon,
    TorrentsFolder,
    ForceSilentDownloadsFromTorrentFolder,
    UpdatePluginsAutomatically,
    ShowSpecialOffers,
    EnableRemoteAccess,
    DontUseNetworkProxyForRemoteAccess,
    DontUseNetworkProxyForListeningIncomingRemoteAccessConnections,
    HideDockIcon,
    /// The number of settings.
    LastSettingValuePlus1,
};
Q_ENUM_NS(Setting)

/// The values of NetworkProxyMode.
enum NetworkProxyModeValue {
    NoProxy = 0,
    SystemProxy = 1,
    ManualProxy = 2,
};
Q_ENUM_NS(NetworkProxyModeValue)
} // namespace AppSettings

/// The setting's key: the enumerator's name. Empty for a number that is no enumerator.
QString toString(AppSettings::Setting setting);
