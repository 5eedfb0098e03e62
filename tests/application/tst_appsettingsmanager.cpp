#include "appsettings.h"
#include "appsettingsmanager.h"
#include "dmcoresettings.h"
#include "multithreadedsqldatabasemanager.h"
#include "qtappportablemodesupport.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using Values = QtAppAbstractSettingsManager::Values;

class TestAppSettingsManager : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void keys_data();
    void keys();
    void defaults();
    void pathsInTheTable_data();
    void pathsInTheTable();
    void forbiddenToChangeByRemote();

private:
    QSharedPointer<AbstractSqlDatabaseManager> database() const
    {
        return QSharedPointer<MultiThreadedSqlDatabaseManager>::create(
            m_dir.filePath(u"db.sqlite"_qs), QString());
    }

    QTemporaryDir m_dir;
};

void TestAppSettingsManager::initTestCase()
{
    QFile dirs(m_dir.filePath(u"user-dirs.dirs"_qs));
    QVERIFY(dirs.open(QIODevice::WriteOnly));
    dirs.write("XDG_DOWNLOAD_DIR=\"/home/me/dl\"\n");
    dirs.close();
    qputenv("XDG_CONFIG_HOME", m_dir.path().toUtf8());
}

void TestAppSettingsManager::keys_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("expected");
    const auto app = [](int number, const QString &expected) {
        QTest::addRow("application, %d", number)
            << toString(static_cast<AppSettings::Setting>(number)) << expected;
    };
    const auto engine = [](int number, const QString &expected) {
        QTest::addRow("engine, %d", number)
            << toString(static_cast<DmCoreSettings::Setting>(number)) << expected;
    };
    app(0, u"NetworkProxyMode"_qs);
    app(16, u"Socks5_ProxyPwd"_qs);
    app(27, u"WbDontInterceptDownloadsIfKeyIsPressed"_qs);
    app(34, u"LocaleName"_qs);
    app(47, u"HideDockIcon"_qs);
    app(48, u"LastSettingValuePlus1"_qs);
    app(49, QString());
    engine(0, u"DefaultDownloadPath"_qs);
    // Of two names of a number the one that is declared first.
    engine(4, u"TumSettingsFirstValue"_qs);
    engine(5, u"MaxUploadSpeed"_qs);
    engine(9, u"MaxURatio"_qs);
    engine(10, u"MaxAdditionalQueryInfoDownloads"_qs);
    engine(36, u"BatteryMinimumPowerLevelToRunDownloads"_qs);
    engine(45, u"BtEnablePex"_qs);
    engine(52, u"UseSystemDefaultUserAgent"_qs);
    engine(53, u"LastSettingValuePlus1"_qs);
    engine(-1, QString());
}

void TestAppSettingsManager::keys()
{
    QFETCH(const QString, key);
    QTEST(key, "expected");
}

void TestAppSettingsManager::defaults()
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

void TestAppSettingsManager::pathsInTheTable_data()
{
    QTest::addColumn<bool>("support");
    QTest::addColumn<bool>("portable");
    QTest::addColumn<QString>("defaultPath");
    QTest::addColumn<Values>("stored");
    const Values plain{{u"DefaultDownloadPath"_qs, u"/home/me/dl"_qs},
                       {u"FixedDownloadPath"_qs, u"/home/me/dl/x"_qs},
                       {u"TorrentsFolder"_qs, u"/home/me/dl/x"_qs},
                       {u"AntivirusPath"_qs, u"/home/me/dl/x"_qs},
                       {u"LaunchExternalAppOnDownloadCompletion_AppPath"_qs, u"/home/me/dl/x"_qs},
                       {u"AntivirusArgs"_qs, u"/home/me/dl/x"_qs}};
    QTest::newRow("no support") << false << false << u"/home/me/dl"_qs << plain;
    QTest::newRow("not portable") << true << false << u"/home/me/dl"_qs << plain;
    QTest::newRow("portable") << true << true << u"sysdownloadloc"_qs
                              << Values{{u"DefaultDownloadPath"_qs, u"sysdownloadloc"_qs},
                                        {u"FixedDownloadPath"_qs, u"sysdownloadloc/x"_qs},
                                        {u"TorrentsFolder"_qs, u"sysdownloadloc/x"_qs},
                                        {u"AntivirusPath"_qs, u"sysdownloadloc/x"_qs},
                                        {u"LaunchExternalAppOnDownloadCompletion_AppPath"_qs,
                                         u"sysdownloadloc/x"_qs},
                                        {u"AntivirusArgs"_qs, u"/home/me/dl/x"_qs}};
}

void TestAppSettingsManager::pathsInTheTable()
{
    QFETCH(const bool, support);
    QFETCH(const bool, portable);
    QFETCH(const Values, stored);
    const auto portableModeSupport =
        support ? QSharedPointer<QtAppPortableModeSupport>::create(portable) : nullptr;
    Values inMemory;
    for (auto it = stored.cbegin(); it != stored.cend(); ++it)
        inMemory.insert(it.key(), u"/home/me/dl/x"_qs);
    inMemory.insert(u"DefaultDownloadPath"_qs, u"/home/me/dl"_qs);
    {
        AppSettingsManager settings(database(), portableModeSupport);
        QTEST(settings.defaultValue(u"DefaultDownloadPath"_qs), "defaultPath");
        settings.setAllValues(inMemory, {});
    }
    QCOMPARE(AppSettingsManager(database(), portableModeSupport).allValues(), inMemory);
    QCOMPARE(AppSettingsManager(database()).allValues(), stored);
}

void TestAppSettingsManager::forbiddenToChangeByRemote()
{
    QCOMPARE(AppSettingsManager::forbiddenToChangeByRemote().join(u' '),
             u"AntivirusUid AntivirusPath AntivirusArgs LaunchExternalAppOnDownloadCompletion "
             "LaunchExternalAppOnDownloadCompletion_AppPath "
             "LaunchExternalAppOnDownloadCompletion_AppArgsTemplate"_qs);
}

QTEST_GUILESS_MAIN(TestAppSettingsManager)
#include "tst_appsettingsmanager.moc"
