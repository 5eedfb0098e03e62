#include "appdataaccesshelper.h"
#include "appsettings.h"
#include "appsettingsmanager.h"
#include "dmcoresettings.h"
#include "multithreadedsqldatabasemanager.h"
#include "qtappportablemodesupport.h"
#include "qtqobjectstracker.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using Values = QtAppAbstractSettingsManager::Values;

class TestAppSettingsManager : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

    QSharedPointer<AbstractSqlDatabaseManager> database() const
    {
        return QSharedPointer<MultiThreadedSqlDatabaseManager>::create(
            m_dir.filePath(u"db.sqlite"_qs), QString());
    }

private Q_SLOTS:
    void initTestCase()
    {
        QFile dirs(m_dir.filePath(u"user-dirs.dirs"_qs));
        QVERIFY(dirs.open(QIODevice::WriteOnly));
        dirs.write("XDG_DOWNLOAD_DIR=\"/home/me/dl\"\n");
        qputenv("XDG_CONFIG_HOME", m_dir.path().toUtf8());
    }

    void keys()
    {
        QStringList keys;
        for (const int number : {0, 16, 27, 34, 47, 48, 49})
            keys += toString(static_cast<AppSettings::Setting>(number));
        QCOMPARE(
            keys.join(u' '),
            u"NetworkProxyMode Socks5_ProxyPwd WbDontInterceptDownloadsIfKeyIsPressed LocaleName "
            "HideDockIcon LastSettingValuePlus1 "_qs);
        keys.clear();
        // Of two names of a number (4 and 9) the one that is declared first.
        for (const int number : {0, 4, 5, 9, 10, 36, 45, 52, 53, -1})
            keys += toString(static_cast<DmCoreSettings::Setting>(number));
        QCOMPARE(
            keys.join(u' '),
            u"DefaultDownloadPath TumSettingsFirstValue MaxUploadSpeed MaxURatio "
            "MaxAdditionalQueryInfoDownloads BatteryMinimumPowerLevelToRunDownloads BtEnablePex "
            "UseSystemDefaultUserAgent LastSettingValuePlus1 "_qs);
        QCOMPARE(AppSettingsManager::forbiddenToChangeByRemote().join(u' '),
                 u"AntivirusUid AntivirusPath AntivirusArgs LaunchExternalAppOnDownloadCompletion "
                 "LaunchExternalAppOnDownloadCompletion_AppPath "
                 "LaunchExternalAppOnDownloadCompletion_AppArgsTemplate"_qs);
    }

    void defaults()
    {
        Values expected{
            {u"DefaultDownloadPath"_qs, u"/home/me/dl"_qs},
            {u"PartialDownloadFileSuffix"_qs, u"kovdownload"_qs},
            {u"WbDownloadsTooSmallSizeValue"_qs, u"1048576"_qs},
            {u"WbDownloadsUnwantedExtensionsList"_qs, u"pls m3u"_qs},
            {u"AntivirusArgs"_qs, u"%path%"_qs},
            {u"BatteryMinimumPowerLevelToRunDownloads"_qs, u"15"_qs},
            {u"LocaleName"_qs, u""_qs},
            {u"BtTrackerList"_qs, u""_qs},
            {u"LaunchExternalAppOnDownloadCompletion_AppArgsTemplate"_qs, u"%path%"_qs},
            {u"ScheduleForNewDownloads"_qs, u"127:360:600"_qs},
            {u"MaxAdditionalQueryInfoDownloads"_qs, u"3"_qs},
        };
        const QString ones = QStringLiteral(
            "CheckUpdatesAutomatically InstallUpdatesAutomatically AllowToUseMobileNetworks "
            "WbInterceptDownloads WbDontInterceptDownloadsWithUnwantedExtensions "
            "WbDontInterceptDownloadsFromUnwantedHosts "
            "WbAbortedInterceptedDownloadForwardToBrowser WbDontInterceptDownloadsIfKeyIsPressed "
            "AutoRemoveDownloadsWithMissingFiles NotifyOfAddedDownloads NotifyOfFinishedDownloads "
            "NotifyOfDownloadsWhenAppInactiveOnly PreventOsAutoSleepIfDownloadsRunning "
            "PreventOsAutoSleepIfDownloadsRunning_IgnoreFinished "
            "PreventOsAutoSleepIfDownloadsRunning_IncludingScheduled AutoRetryFailedDownloads "
            "DisablePostFinishedTasksOnBattery ShowTotalUploadSpeedInDock "
            "DeleteLocalServiceFilesWhenDownloadFinished UpdatePluginsAutomatically "
            "IndicateDownloadAndUploadUsingTrayIcon ShowSpecialOffers "
            "DontUseNetworkProxyForListeningIncomingRemoteAccessConnections BtEnableDht "
            "BtEnablePex BtEnableUtp BtEnableLsd DetectUnwantedDownloadErrors "
            "MaxAdditionalSmallDownloads MaxAdditionalDownloadsIfTotalSpeedIsTooSlow "
            "UseSystemDefaultUserAgent NetworkProxyMode SortBy ExistingFileReaction");
        const QString zeros = QStringLiteral(
            "DownloadPathDependsOnFileType DownloadPathDependsOnSourceUrl "
            "TakeLastModifiedDateFromServer SortAscendingOrder AllowToUseRoamingNetworks "
            "WbDontInterceptTooSmallDownloads "
            "PreventOsAutoSleepIfDownloadsRunning_IgnoreDownloadsWithResumeSupport "
            "SilentModeForNewDownloads AutoRemoveFinishedDownloads "
            "AutoRemoveFinishedDownloads_KeepDays AutoLaunchAntivirusForFinishedDownloads "
            "DisablePostFinishedTasks EnableRemoteAccess DontUseNetworkProxyForRemoteAccess "
            "BtSessionPort BtEnableTrackerList BtEncryptionPolicy "
            "LaunchExternalAppOnDownloadCompletion EnableSchedulerForNewDownloads HideDockIcon");
        for (const QString &key : ones.split(u' '))
            expected.insert(key, u"1"_qs);
        for (const QString &key : zeros.split(u' '))
            expected.insert(key, u"0"_qs);
        Values defaults = AppSettingsManager(database()).allDefaultValues();
        const QString hosts = defaults.take(u"WbDownloadsUnwantedHostsList"_qs);
        QCOMPARE(defaults, expected);
        QVERIFY(!defaults.value(u"LocaleName"_qs).isNull());
        static const QRegularExpression eightHosts(u"^(?:[a-z0-9-]+\\.[a-z0-9.-]+ ){7}\\S+$"_qs);
        QVERIFY(eightHosts.match(hosts).hasMatch());
    }

    void pathsInTheTable()
    {
        for (const bool portable : {false, true}) {
            const auto support = QSharedPointer<QtAppPortableModeSupport>::create(portable);
            const QString stored = portable ? u"sysdownloadloc"_qs : u"/home/me/dl"_qs;
            Values inMemory{{u"AntivirusArgs"_qs, u"/home/me/dl"_qs}};
            Values inTable = inMemory;
            for (const char *key :
                 {"DefaultDownloadPath", "FixedDownloadPath", "TorrentsFolder", "AntivirusPath",
                  "LaunchExternalAppOnDownloadCompletion_AppPath"}) {
                inMemory.insert(QLatin1String(key), u"/home/me/dl/x"_qs);
                inTable.insert(QLatin1String(key), stored + u"/x"_qs);
            }
            {
                AppSettingsManager settings(database(), support);
                QCOMPARE(settings.defaultValue(u"DefaultDownloadPath"_qs), stored);
                settings.setAllValues(inMemory, {});
                settings.setValue(u"TorrentsFolder"_qs, u"/home/me/dl/y"_qs);
            }
            inMemory.insert(u"TorrentsFolder"_qs, u"/home/me/dl/y"_qs);
            inTable.insert(u"TorrentsFolder"_qs, stored + u"/y"_qs);
            QCOMPARE(AppSettingsManager(database(), support).allValues(), inMemory);
            QCOMPARE(AppSettingsManager(database()).allValues(), inTable);
        }
    }

    void dataAccessIsLazyAndShared()
    {
        const QtQObjectsTracker tracker;
        const QString folder = m_dir.filePath(u"new/data"_qs);
        const AppDataAccessHelper helper(QDir(folder), {});
        const AppDataAccessHelper otherHost(QDir(folder), {});
        QCOMPARE(helper.database()->databaseFilePath(), folder + u"/db.sqlite"_qs);
        QVERIFY(!QFile::exists(folder));
        {
            const auto settings = helper.settings();
            QCOMPARE(helper.settings(), settings);
            QVERIFY(QFile::exists(folder + u"/db.sqlite"_qs));
        }
        QCOMPARE(tracker.aliveObjects(), QStringList());
        otherHost.settings()->setValue(u"SortBy"_qs, u"4"_qs);
        QCOMPARE(helper.settings()->value(u"SortBy"_qs), u"4"_qs);
    }
};

QTEST_GUILESS_MAIN(TestAppSettingsManager)
#include "tst_appsettingsmanager.moc"
