#include "appdataaccesshelper.h"
#include "isolatedhost.h"
#include "logcapture.h"
#include "sqldatabasemanager.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace AppSettings;
using ValuesList = QtAppAbstractSettingsManager::ValuesList;

namespace {

/// The host's copy of the application's settings, as text.
QString known(const IsolatedHost &host)
{
    const WebExtensionBrowserMonitorSettings &monitor =
        host.extensionSettings->settings().browser.monitor;
    return QStringLiteral("%1%2 %3 '%4' %5 '%6' %7")
        .arg(int(monitor.enable))
        .arg(int(monitor.allowDownload))
        .arg(monitor.skipSmallerThan)
        .arg(QString::fromStdString(monitor.skipExtensions))
        .arg(int(monitor.skipServersEnabled))
        .arg(QString::fromStdString(monitor.skipServers))
        .arg(int(monitor.skipIfKeyPressed));
}

ValuesList values(std::initializer_list<std::pair<Setting, const char *>> pairs)
{
    ValuesList list;
    for (const auto &[setting, value] : pairs)
        list.emplaceBack(toString(setting), QString::fromUtf8(value));
    return list;
}

ValuesList allValues()
{
    return values({{WbInterceptDownloads, "1"},
                   {WbAbortedInterceptedDownloadForwardToBrowser, "1"},
                   {WbDontInterceptTooSmallDownloads, "1"},
                   {WbDownloadsTooSmallSizeValue, "1048576"},
                   {WbDontInterceptDownloadsWithUnwantedExtensions, "1"},
                   {WbDownloadsUnwantedExtensionsList, "pls mé"},
                   {WbDontInterceptDownloadsFromUnwantedHosts, "1"},
                   {WbDownloadsUnwantedHostsList, "a.org b.org"},
                   {WbDontInterceptDownloadsIfKeyIsPressed, "1"}});
}

/// The extension's settings with these members of "monitor", and further ones.
QString post(const char *monitor, const char *others = "")
{
    return u"{'id':'1','type':'post_settings','post_settings':{'browser':{'monitor':{%1}}%2}}"_qs
        .arg(QString::fromUtf8(monitor), QString::fromUtf8(others));
}

QString query(const QString &id) { return u"{'id':'%1','type':'query_settings'}"_qs.arg(id); }

const QString application = u"application"_qs;
const QString posted = answer(u"1"_qs, u"post_settings"_qs, u""_qs);

} // namespace

class TestExtensionSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readingAndWriting()
    {
        IsolatedHost host;
        QCOMPARE(known(host), u"00 0 '' 0 '' 0"_qs);
        const QSignalSpy written(&host.settings(), &QtAppAbstractSettingsManager::valuesChanged);
        host.send(post("'enable':true,'allowDownload':true,'skipSmallerThan':'1048576',"
                       "'skipExtensions':'pls mé','skipServersEnabled':true,"
                       "'skipServers':'a.org b.org','skipIfKeyPressed':true"));
        QCOMPARE(written.constFirst().at(0).value<ValuesList>(), allValues());
        QCOMPARE(written.constFirst().at(1).toString(), u"WebExtensionSettingsManager"_qs);
        IsolatedHost other;
        other.settings().setValues(allValues(), application);
        QCOMPARE(known(other), u"11 1048576 'pls mé' 1 'a.org b.org' 1"_qs);
        // Rules that are switched off keep their values. Only the servers are still read.
        const ValuesList off = values({{WbInterceptDownloads, "0"},
                                       {WbAbortedInterceptedDownloadForwardToBrowser, "0"},
                                       {WbDontInterceptTooSmallDownloads, "0"},
                                       {WbDontInterceptDownloadsWithUnwantedExtensions, "0"},
                                       {WbDontInterceptDownloadsFromUnwantedHosts, "0"},
                                       {WbDontInterceptDownloadsIfKeyIsPressed, "0"}});
        host.send(post("'enable':false,'allowDownload':false,'skipServers':'b.org'"));
        QCOMPARE(written.constLast().at(0).value<ValuesList>(), off);
        other.settings().setValues(off, application);
        QCOMPARE(known(other), u"00 0 '' 0 'a.org b.org' 0"_qs);
        // Any 32-bit number except 0 is true.
        other.settings().setValues(
            values({{WbInterceptDownloads, "-1"},
                    {WbAbortedInterceptedDownloadForwardToBrowser, "99999999999999999999"},
                    {WbDontInterceptDownloadsIfKeyIsPressed, "0x1"},
                    {WbDontInterceptTooSmallDownloads, "1"},
                    {WbDownloadsTooSmallSizeValue, "-5"}}),
            application);
        QCOMPARE(known(other), u"10 -5 '' 0 'a.org b.org' 0"_qs);
    }

    void changesOnBothSides()
    {
        IsolatedHost host;
        const QSignalSpy changed(host.extensionSettings.data(),
                                 &WebExtensionSettingsManager::settingsChanged);
        host.set(LocaleName, "de");
        host.set(WbInterceptDownloads, "1");
        for (int i = 0; i < 2; ++i) // the same value again is no change
            host.send(post("'enable':true,'skipSmallerThan':'5'", ",'locale':'de'"));
        QCOMPARE(changed, QList<QVariantList>({{false}, {true}}));
        host.settings().setValues(values({{WbAbortedInterceptedDownloadForwardToBrowser, "0"}}),
                                  application);
        QCOMPARE(host.extensionSettings->settings().locale, "de");
        // The host's own changes are not read back; a source in other letter case is not the
        // host's.
        host.settings().setAllValues({}, u"WebExtensionSettingsManager"_qs);
        QCOMPARE(changed.size(), 3);
        host.settings().setAllValues({}, u"webExtensionSettingsManager"_qs);
        QCOMPARE(changed.size(), 4);
    }

    void queriesAndPushes()
    {
        IsolatedHost host;
        host.set(WbInterceptDownloads, "1");
        host.set(WbInterceptDownloads, "0");
        QCOMPARE(host.sent(), u""_qs); // no query yet
        host.send(query(u"1"_qs));
        host.set(LocaleName, "de");
        QCOMPARE(host.sent(), u""_qs);
        host.set(WbDontInterceptDownloadsIfKeyIsPressed, "1");
        QCOMPARE(host.sent(),
                 u"{'error':'','id':'','result':'','settings':{'browser':{'menu':{"
                 "'dlYtChannel':true,'dlall':true,'dllink':true,'dlpage':false,'dlselected':true,"
                 "'dlvideo':true},'monitor':{'allowDownload':false,'enable':false,"
                 "'skipExtensions':'','skipIfKeyPressed':true,'skipServers':'',"
                 "'skipServersEnabled':false,'skipSmallerThan':'0','video':{'enable':false,"
                 "'enableSnifferDll':false,'showButton':true}}},'locale':''},"
                 "'type':'query_settings'}"_qs);
        // The extension is not notified of its own change.
        QCOMPARE(host.send(post("", ",'locale':'de'")), posted);
    }

    /// The application has other defaults, and the host must not change any of the user's choices.
    void applicationWithOtherDefaults()
    {
        IsolatedHost host(false);
        QVERIFY(host.send(query(u"1"_qs)).contains(u"'skipExtensions':'pls m3u'"));
        QVariantHash defaults{{u"WbDownloadsUnwantedExtensionsList"_qs, u"iso"_qs},
                              {u"WbDownloadsUnwantedHostsList"_qs, u"h.org"_qs},
                              {u"WbDownloadsTooSmallSizeValue"_qs, u"5000000000"_qs},
                              {u"WbDontInterceptTooSmallDownloads"_qs, u"1"_qs}};
        host.takeAll({{u"WbInterceptDownloads"_qs, u"0"_qs}}, defaults);
        const QString told = host.sent();
        QCOMPARE(told.count(u"query_settings"_qs), 1);
        QCOMPARE(known(host), u"01 0 'iso' 1 'h.org' 1"_qs);
        const QSignalSpy written(&host.settings(), &QtAppAbstractSettingsManager::valuesChanged);
        const QString record = told.section(u"'settings':"_qs, 1).section(u",'type'"_qs, 0, 0);
        host.send(u"{'id':'2','type':'post_settings','post_settings':%1}"_qs.arg(record).replace(
            u"'allowDownload':true"_qs, u"'allowDownload':false"_qs));
        QCOMPARE(written.size(), 1);
        QCOMPARE(written.constFirst().at(0).value<ValuesList>(),
                 values({{WbAbortedInterceptedDownloadForwardToBrowser, "0"}}));
    }

    /// A connected application has a moment to send its settings.
    void nothingIsJudgedBeforeSettingsAreKnown_data()
    {
        QTest::addColumn<int>("then");
        QTest::newRow("no application") << 0;
        QTest::newRow("it tells them") << 1;
        QTest::newRow("it goes") << 2;
        QTest::newRow("it is silent") << 3;
    }

    void nothingIsJudgedBeforeSettingsAreKnown()
    {
        QFETCH(const int, then);
        IsolatedHost host(false);
        host.client->dataAccessHelper()->settings()->setValues(
            values({{WbInterceptDownloads, "0"}}), application);
        QVERIFY(then == 0 || host.connectToApplication());
        const QString left = answer(u"c"_qs, u"create_downloads"_qs, u"ignoredDueSettings"_qs);
        QString sent = host.send(
            u"{'id':'c','type':'create_downloads','create_downloads':{'catchedDownloads':'1',"
            "'downloads':{'item':[{'url':'http://a.org/b'}]}}}"_qs);
        // Compared with the defaults, this would be no change.
        sent += host.send(post("'enable':true,'skipIfKeyPressed':false"));
        sent += host.send(query(u"q"_qs));
        QCOMPARE(sent.isEmpty(), then != 0);
        if (then == 1)
            host.takeAll({{u"WbInterceptDownloads"_qs, u"0"_qs}}, {});
        else if (then == 2)
            QVERIFY(host.disconnectFromApplication());
        QCOMPARE((sent += host.sent()).contains(u"'id':'q'"), then != 3);
        QTRY_VERIFY((sent += host.sent()).contains(u"'id':'q'"));
        QVERIFY2(sent.contains(left) && sent.contains(posted), qPrintable(sent));
        QVERIFY(sent.section(u"'id':'q'"_qs, 1).contains(u"'enable':true"));
        QCOMPARE(host.settings().value(toString(WbInterceptDownloads)), u"1"_qs);
        QCOMPARE(host.jobs.size(), 0);
    }

    void storeHeldByAnotherProcess()
    {
        IsolatedHost(false).send(query(u"1"_qs));
        IsolatedHost host(false);
        // For SQLite, this is like another process's connection.
        SqlDatabaseManager other(host.databasePath(), u"other"_qs,
                                 QSharedPointer<QRecursiveMutex>::create());
        QVERIFY(other.openDatabase());
        QVERIFY(other.createQuery(u"PRAGMA locking_mode=EXCLUSIVE"_qs).exec());
        QVERIFY(other
                    .createQuery(u"CREATE TABLE Settings (Name TEXT, Value TEXT, "
                                 "PRIMARY KEY (Name))"_qs)
                    .exec());
        QVERIFY(other
                    .createQuery(u"REPLACE INTO Settings VALUES "
                                 "('WbInterceptDownloads', '0')"_qs)
                    .exec());
        QElapsedTimer timer;
        timer.start();
        QVERIFY(host.send(query(u"1"_qs)).contains(u"'enable':true")); // only defaults
        const auto store = [](const char *error, const char *result) {
            return answer({}, u"settings_store"_qs, QLatin1String(error), QLatin1String(result));
        };
        // The change is in effect, the answer has no error, and a notification reports the store.
        QCOMPARE(host.send(post("'enable':true,'skipExtensions':'iso'")), posted);
        QString told;
        QTRY_VERIFY((told += host.sent()).contains(store("busy", "")));
        QCOMPARE(host.send(post("'enable':true,'skipExtensions':'iso','allowDownload':false")),
                 posted);
        QVERIFY2(!timer.hasExpired(2500), "it was waited for more than once");
        other.closeDatabase();
        // Settings that could not be read are read with the next query; later changes take
        // precedence.
        told = host.send(query(u"2"_qs));
        QVERIFY2(told.contains(u"'enable':false") && told.contains(u"'skipExtensions':'iso'"),
                 qPrintable(told));
        QTRY_VERIFY((told += host.sent()).contains(store("", "1")));
        QCOMPARE(host.client->dataAccessHelper()->settings()->value(
                     toString(WbDownloadsUnwantedExtensionsList)),
                 u"iso"_qs);
    }

    /// A change that an application did not receive before its end is in the store.
    void unconfirmedWhenTheLinkBreaks()
    {
        IsolatedHost host;
        QVERIFY(host.connectToApplication());
        host.send(post("'skipExtensions':'iso'"));
        QVERIFY(!QFile::exists(host.databasePath()));
        QVERIFY(host.disconnectFromApplication());
        QCOMPARE(host.client->dataAccessHelper()->settings()->allValues().value(
                     toString(WbDownloadsUnwantedExtensionsList)),
                 u"iso"_qs);
    }

    void unreadableMembersAreLogged()
    {
        IsolatedHost host;
        const LogCapture log;
        host.send(post("'enable':'yes','skipSmallerThan':'x','skipServers':null,'video':5,"
                       "'allowDownload':false",
                       ",'locale':1"));
        QStringList lines;
        for (const char *name : {"video", "enable", "skipSmallerThan", "skipServers", "locale"})
            lines += u"[pmxMembers]: WARNING: \"%1\" is of the wrong type and passed over"_qs.arg(
                QLatin1String(name));
        QCOMPARE(log.texts().filter(u"[pmxMembers]"_qs), lines);
        QCOMPARE(log.texts().filter(u"is no object"_qs), QStringList());
        host.send(u"{'id':'1','type':'handshake','handshake':'1'}"_qs);
        QCOMPARE(log.texts().constLast(),
                 u"[pmxKovBhIpcTask]: WARNING: the record \"handshake\" is no object"_qs);
    }
};

QTEST_GUILESS_MAIN(TestExtensionSettings)
#include "tst_extensionsettings.moc"
