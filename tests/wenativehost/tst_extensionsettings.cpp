#include "isolatedhost.h"

#include <QSignalSpy>
#include <QTest>

using namespace AppSettings;
using Values = QList<std::pair<QString, QString>>;

namespace {

/// What the host knows of the application's settings, as a text.
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

Values values(std::initializer_list<std::pair<Setting, const char *>> pairs)
{
    Values list;
    for (const auto &[setting, value] : pairs)
        list.emplaceBack(toString(setting), QString::fromUtf8(value));
    return list;
}

Values allValues()
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

/// The extension's settings with those members of "monitor" and what else is given.
QString post(const char *monitor, const char *others = "")
{
    return u"{'id':'1','type':'post_settings','post_settings':{'browser':{'monitor':{%1}}%2}}"_qs
        .arg(QString::fromUtf8(monitor), QString::fromUtf8(others));
}

QString query(const QString &id) { return u"{'id':'%1','type':'query_settings'}"_qs.arg(id); }

const QString application = u"application"_qs;

} // namespace

class TestExtensionSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void reading_data()
    {
        QTest::addColumn<Values>("values");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *title, const Values &list, const QString &expected) {
            QTest::newRow(title) << list << expected;
        };
        row("nothing", {}, u"00 0 '' 0 '' 0"_qs);
        row("all", allValues(), u"11 1048576 'pls mé' 1 'a.org b.org' 1"_qs);
        row("rules switched off, hosts are read all the same",
            values({{WbDownloadsTooSmallSizeValue, "5"},
                    {WbDownloadsUnwantedExtensionsList, "pls"},
                    {WbDownloadsUnwantedHostsList, "a.org"}}),
            u"00 0 '' 0 'a.org' 0"_qs);
        row("any number but 0 is true",
            values({{WbInterceptDownloads, "-1"},
                    {WbAbortedInterceptedDownloadForwardToBrowser, "2147483648"},
                    {WbDontInterceptDownloadsFromUnwantedHosts, "0x1"},
                    {WbDontInterceptDownloadsIfKeyIsPressed, "true"},
                    {WbDontInterceptTooSmallDownloads, "1"},
                    {WbDownloadsTooSmallSizeValue, "-5"}}),
            u"10 -5 '' 0 '' 0"_qs);
    }

    void reading()
    {
        QFETCH(const Values, values);
        IsolatedHost host;
        host.settings().setValues(values, application);
        QTEST(known(host), "expected");
    }

    void writing()
    {
        IsolatedHost host;
        QSignalSpy written(&host.settings(), &QtAppAbstractSettingsManager::valuesChanged);
        host.tell(post("'enable':true,'allowDownload':true,'skipSmallerThan':'1048576',"
                       "'skipExtensions':'pls mé','skipServersEnabled':true,"
                       "'skipServers':'a.org b.org','skipIfKeyPressed':true"));
        QCOMPARE(written.size(), 1);
        QCOMPARE(written.constFirst().at(0).value<Values>(), allValues());
        QCOMPARE(written.constFirst().at(1).toString(), u"WebExtensionSettingsManager"_qs);
        // Rules that are switched off keep their values.
        host.tell(post("'enable':false,'allowDownload':false,'skipServers':'b.org'"));
        QCOMPARE(written.constLast().at(0).value<Values>(),
                 values({{WbInterceptDownloads, "0"},
                         {WbAbortedInterceptedDownloadForwardToBrowser, "0"},
                         {WbDontInterceptTooSmallDownloads, "0"},
                         {WbDontInterceptDownloadsWithUnwantedExtensions, "0"},
                         {WbDontInterceptDownloadsFromUnwantedHosts, "0"},
                         {WbDontInterceptDownloadsIfKeyIsPressed, "0"}}));
    }

    void changesOnBothSides()
    {
        IsolatedHost host;
        QSignalSpy changed(host.extensionSettings.data(),
                           &WebExtensionSettingsManager::settingsChanged);
        host.set(LocaleName, "de");
        host.set(WbInterceptDownloads, "0");
        QCOMPARE(changed.size(), 0);
        host.set(WbInterceptDownloads, "1");
        QCOMPARE(changed.size(), 1);
        for (int i = 0; i < 2; ++i) // the same again is no change
            host.tell(post("'enable':true,'skipSmallerThan':'5000000000'", ",'locale':'de'"));
        QCOMPARE(changed, QList<QVariantList>({{false}, {true}}));
        host.settings().setValues(values({{WbAbortedInterceptedDownloadForwardToBrowser, "0"}}),
                                  application);
        QCOMPARE(known(host), u"10 0 '' 0 '' 0"_qs);
        QCOMPARE(host.extensionSettings->settings().locale, "de");
        QCOMPARE(host.settings().value(toString(WbDownloadsTooSmallSizeValue)), u"5000000000"_qs);
        // What the host wrote is not read back; another case is another's origin.
        host.settings().setAllValues({}, u"WebExtensionSettingsManager"_qs);
        QCOMPARE(changed.size(), 3);
        host.settings().setAllValues({}, u"webExtensionSettingsManager"_qs);
        QCOMPARE(changed.size(), 4);
        host.set(WbInterceptDownloads, "1");
        host.settings().resetToDefaults(application);
        QCOMPARE(changed.size(), 6);
    }

    void queriesThatWaitAreAnsweredInOrder()
    {
        // The application's settings become known, and before the manager hears of it, queries
        // arrive.
        IsolatedHost host(false);
        connect(host.client->settingsInitializer().data(),
                &AppClientSettingsInitializer::settingsInitialized, this, [&host] {
                    for (const QString &id : {u"b"_qs, u"c"_qs, u"a"_qs})
                        QCOMPARE(host.tell(query(id)), u""_qs);
                });
        host.makeDispatcher();
        host.makeSettingsKnown();
        QStringList ids;
        for (const QString &message : host.sent().split(u'|'))
            ids.append(message.section(u'\'', 7, 7));
        QCOMPARE(ids, QStringList({u"b"_qs, u"c"_qs, u"a"_qs}));
    }

    void queriesAndPushes()
    {
        // Without the application the local store answers.
        IsolatedHost alone(false);
        QVERIFY(!alone.extensionSettings->isInitialized());
        QVERIFY(alone.tell(query(u"1"_qs)).contains(u"'skipExtensions':'pls m3u'"));

        IsolatedHost host;
        host.set(WbInterceptDownloads, "1");
        host.set(WbInterceptDownloads, "0");
        QCOMPARE(host.sent(), u""_qs); // nobody has asked yet
        host.tell(query(u"1"_qs));
        host.set(LocaleName, "de");
        QCOMPARE(host.sent(), u""_qs);
        host.set(WbDontInterceptDownloadsIfKeyIsPressed, "1");
        const QString pushed = host.sent();
        QCOMPARE(pushed,
                 u"{'error':'','id':'','result':'','settings':{'browser':{'menu':{"
                 "'dlYtChannel':true,'dlall':true,'dllink':true,'dlpage':false,'dlselected':true,"
                 "'dlvideo':true},'monitor':{'allowDownload':false,'enable':false,"
                 "'skipExtensions':'','skipIfKeyPressed':true,'skipServers':'',"
                 "'skipServersEnabled':false,'skipSmallerThan':'0','video':{'enable':false,"
                 "'enableSnifferDll':false,'showButton':true}}},'locale':''},"
                 "'type':'query_settings'}"_qs);
        // The extension is not told of its own change.
        QCOMPARE(host.tell(post("", ",'locale':'de'")),
                 answer(u"1"_qs, u"post_settings"_qs, u""_qs));
        host.sender.reset();
        host.set(WbInterceptDownloads, "0");
        QCOMPARE(host.sent(), u""_qs);
    }
};

QTEST_GUILESS_MAIN(TestExtensionSettings)
#include "tst_extensionsettings.moc"
