#include "appsettings.h"
#include "isolatedclientmodule.h"
#include "webextensionsettingsmanager.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace std::string_literals;

namespace {

using Values = QList<std::pair<QString, QString>>;
using Monitor = WebExtensionBrowserMonitorSettings;
using Change = std::function<void(WebExtensionSettings &)>;

/// The monitor options as a text, without those that the application does not know.
QString described(const Monitor &monitor)
{
    return QStringLiteral("%1%2 %3 '%4' %5 '%6' %7")
        .arg(int(monitor.enable))
        .arg(int(monitor.allowDownload))
        .arg(monitor.skipSmallerThan)
        .arg(QString::fromStdString(monitor.skipExtensions))
        .arg(int(monitor.skipServersEnabled))
        .arg(QString::fromStdString(monitor.skipServers))
        .arg(int(monitor.skipIfKeyPressed));
}

Values values(std::initializer_list<std::pair<AppSettings::Setting, const char *>> pairs)
{
    Values list;
    for (const auto &[setting, value] : pairs)
        list.emplaceBack(toString(setting), QString::fromUtf8(value));
    return list;
}

} // namespace

class TestWebExtensionSettingsManager : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void startsWithDefaults();
    void readsTheLocalSettings();
    void startsInitialized();
    void reading_data();
    void reading();
    void writing_data();
    void writing();
    void equalSettings_data();
    void equalSettings();
    void writesEverythingWhenAnythingDiffers();
    void switchedOffRulesKeepTheirValues();
    void ownWriteIsNotReadBack();
    void changesOfTheApplication();
    void changesOnBothSides();

private:
    std::unique_ptr<IsolatedClientModule> m_client;
    /// Initialized, over empty settings of the application.
    std::unique_ptr<WebExtensionSettingsManager> m_manager;
};

void TestWebExtensionSettingsManager::init()
{
    m_client = std::make_unique<IsolatedClientModule>();
    m_client->bringUp();
    m_manager = std::make_unique<WebExtensionSettingsManager>(m_client->module());
    if (qstrcmp(QTest::currentTestFunction(), "startsWithDefaults") != 0
        && qstrcmp(QTest::currentTestFunction(), "readsTheLocalSettings") != 0)
        m_client->initializeSettings();
}

void TestWebExtensionSettingsManager::cleanup()
{
    m_manager.reset();
    m_client.reset();
}

void TestWebExtensionSettingsManager::startsWithDefaults()
{
    QVERIFY(!m_manager->isInitialized());
    QVERIFY(m_manager->settings() == WebExtensionSettings());
    QCOMPARE(described(m_manager->settings().browser.monitor), u"11 0 '' 0 '' 0"_qs);

    QSignalSpy initialized(m_manager.get(), &WebExtensionSettingsManager::initialized);
    QSignalSpy changed(m_manager.get(), &WebExtensionSettingsManager::settingsChanged);
    m_client->initializeSettings();
    m_manager->onSettingsInitialized();
    QCOMPARE(initialized.size(), 1);
    QVERIFY(m_manager->isInitialized());
    QVERIFY(changed.isEmpty());
    QCOMPARE(described(m_manager->settings().browser.monitor), u"00 0 '' 0 '' 0"_qs);
}

void TestWebExtensionSettingsManager::readsTheLocalSettings()
{
    QSignalSpy initialized(m_manager.get(), &WebExtensionSettingsManager::initialized);
    m_manager->initialize();
    m_manager->initialize();
    QCOMPARE(initialized.size(), 1);
    // The application's own defaults, from a store that nobody has written to.
    QVERIFY(m_manager->settings().browser.monitor.enable);
    QVERIFY(!m_manager->settings().browser.monitor.skipExtensions.empty());
}

void TestWebExtensionSettingsManager::startsInitialized()
{
    m_client->settings().setValues(values({{AppSettings::WbInterceptDownloads, "1"}}), u"a"_qs);
    const WebExtensionSettingsManager another(m_client->module());
    QVERIFY(another.isInitialized());
    QCOMPARE(described(another.settings().browser.monitor), u"10 0 '' 0 '' 0"_qs);
}

void TestWebExtensionSettingsManager::reading_data()
{
    using namespace AppSettings;
    QTest::addColumn<Values>("application");
    QTest::addColumn<QString>("monitor");
    const auto row = [](const char *title, const Values &application, const QString &monitor) {
        QTest::newRow(title) << application << monitor;
    };

    row("all",
        values({{WbInterceptDownloads, "1"},
                {WbAbortedInterceptedDownloadForwardToBrowser, "1"},
                {WbDontInterceptTooSmallDownloads, "1"},
                {WbDownloadsTooSmallSizeValue, "1048576"},
                {WbDontInterceptDownloadsWithUnwantedExtensions, "1"},
                {WbDownloadsUnwantedExtensionsList, "pls m\xc3\xa9"},
                {WbDontInterceptDownloadsFromUnwantedHosts, "1"},
                {WbDownloadsUnwantedHostsList, "a.org b.org"},
                {WbDontInterceptDownloadsIfKeyIsPressed, "1"}}),
        u"11 1048576 'pls m\u00e9' 1 'a.org b.org' 1"_qs);
    row("rules switched off, hosts are read all the same",
        values({{WbDontInterceptTooSmallDownloads, "0"},
                {WbDownloadsTooSmallSizeValue, "5"},
                {WbDontInterceptDownloadsWithUnwantedExtensions, "0"},
                {WbDownloadsUnwantedExtensionsList, "pls"},
                {WbDownloadsUnwantedHostsList, "a.org"}}),
        u"00 0 '' 0 'a.org' 0"_qs);
    row("any number but 0 is true",
        values({{WbInterceptDownloads, "-1"},
                {WbAbortedInterceptedDownloadForwardToBrowser, "2147483647"}}),
        u"11 0 '' 0 '' 0"_qs);
    row("no numbers",
        values({{WbInterceptDownloads, "true"},
                {WbAbortedInterceptedDownloadForwardToBrowser, "0x1"},
                {WbDontInterceptDownloadsFromUnwantedHosts, "1.0"},
                {WbDontInterceptDownloadsIfKeyIsPressed, ""}}),
        u"00 0 '' 0 '' 0"_qs);
    row("more than 32 bits",
        values({{WbInterceptDownloads, "2147483648"},
                {WbDontInterceptTooSmallDownloads, "1"},
                {WbDownloadsTooSmallSizeValue, "4294967296"}}),
        u"00 0 '' 0 '' 0"_qs);
    row("negative size",
        values({{WbDontInterceptTooSmallDownloads, "1"}, {WbDownloadsTooSmallSizeValue, "-5"}}),
        u"00 -5 '' 0 '' 0"_qs);
}

void TestWebExtensionSettingsManager::reading()
{
    QFETCH(const Values, application);
    QFETCH(QString, monitor);
    m_client->settings().setValues(application, u"application"_qs);
    QCOMPARE(described(m_manager->settings().browser.monitor), monitor);
}

void TestWebExtensionSettingsManager::writing_data()
{
    using namespace AppSettings;
    QTest::addColumn<Change>("change");
    QTest::addColumn<Values>("written");
    const auto row = [](const char *title, auto change, const Values &written) {
        QTest::newRow(title) << Change([change](WebExtensionSettings &s) {
            change(s.browser.monitor);
        }) << written;
    };

    row(
        "all",
        [](Monitor &m) {
            m.skipSmallerThan = 5'000'000'000;
            m.skipExtensions = "m\xc3\xa9 pls";
            m.skipServersEnabled = true;
            m.skipServers = "a.org";
            m.skipIfKeyPressed = true;
        },
        values({{WbInterceptDownloads, "1"},
                {WbAbortedInterceptedDownloadForwardToBrowser, "1"},
                {WbDontInterceptTooSmallDownloads, "1"},
                {WbDownloadsTooSmallSizeValue, "5000000000"},
                {WbDontInterceptDownloadsWithUnwantedExtensions, "1"},
                {WbDownloadsUnwantedExtensionsList, "m\xc3\xa9 pls"},
                {WbDontInterceptDownloadsFromUnwantedHosts, "1"},
                {WbDownloadsUnwantedHostsList, "a.org"},
                {WbDontInterceptDownloadsIfKeyIsPressed, "1"}}));
    row(
        "switched off rules",
        [](Monitor &m) {
            m.enable = m.allowDownload = false;
            m.skipServers = "a.org";
        },
        values({{WbInterceptDownloads, "0"},
                {WbAbortedInterceptedDownloadForwardToBrowser, "0"},
                {WbDontInterceptTooSmallDownloads, "0"},
                {WbDontInterceptDownloadsWithUnwantedExtensions, "0"},
                {WbDontInterceptDownloadsFromUnwantedHosts, "0"},
                {WbDontInterceptDownloadsIfKeyIsPressed, "0"}}));
}

void TestWebExtensionSettingsManager::writing()
{
    QFETCH(Change, change);
    QFETCH(Values, written);
    Values seen;
    QStringList origins;
    connect(&m_client->settings(), &QtAppAbstractSettingsManager::valuesChanged, m_manager.get(),
            [&](const Values &changed, const QString &origin) {
                seen += changed;
                origins += origin;
            });
    QSignalSpy changed(m_manager.get(), &WebExtensionSettingsManager::settingsChanged);
    WebExtensionSettings settings;
    change(settings);
    m_manager->setSettings(settings, true);
    QCOMPARE(seen, written);
    QCOMPARE(origins, QStringList(u"WebExtensionSettingsManager"_qs));
    QCOMPARE(changed, QList<QVariantList>({{true}}));
    QVERIFY(m_manager->settings() == settings);
}

void TestWebExtensionSettingsManager::equalSettings_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("the same") << Change([](WebExtensionSettings &) {});
    QTest::newRow("only dlvideo") << Change(
        [](WebExtensionSettings &s) { s.browser.menu.dlvideo = false; });
}

void TestWebExtensionSettingsManager::equalSettings()
{
    QFETCH(Change, change);
    QSignalSpy written(&m_client->settings(), &QtAppAbstractSettingsManager::valuesChanged);
    QSignalSpy changed(m_manager.get(), &WebExtensionSettingsManager::settingsChanged);
    WebExtensionSettings settings = m_manager->settings();
    change(settings);
    m_manager->setSettings(settings, true);
    QVERIFY(written.isEmpty());
    QVERIFY(changed.isEmpty());
    QVERIFY(m_manager->settings().browser.menu.dlvideo);
}

void TestWebExtensionSettingsManager::writesEverythingWhenAnythingDiffers()
{
    WebExtensionSettings settings = m_manager->settings();
    settings.browser.menu.dlvideo = false;
    settings.locale = "de";
    m_manager->setSettings(settings, true);
    QVERIFY(!m_manager->settings().browser.menu.dlvideo);
    QCOMPARE(m_manager->settings().locale, "de"s);

    // The application knows nothing of these and cannot take them back.
    m_client->settings().setValue(toString(AppSettings::WbInterceptDownloads), u"1"_qs);
    QVERIFY(!m_manager->settings().browser.menu.dlvideo);
    QCOMPARE(m_manager->settings().locale, "de"s);
}

void TestWebExtensionSettingsManager::switchedOffRulesKeepTheirValues()
{
    using namespace AppSettings;
    m_client->settings().setValues(values({{WbDontInterceptTooSmallDownloads, "1"},
                                           {WbDownloadsTooSmallSizeValue, "1048576"},
                                           {WbDontInterceptDownloadsWithUnwantedExtensions, "1"},
                                           {WbDownloadsUnwantedExtensionsList, "pls"}}),
                                   u"application"_qs);
    WebExtensionSettings settings = m_manager->settings();
    settings.browser.monitor.skipSmallerThan = 0;
    settings.browser.monitor.skipExtensions.clear();
    m_manager->setSettings(settings, true);
    const auto value = [this](Setting setting) {
        return m_client->settings().value(toString(setting));
    };
    QCOMPARE(value(WbDontInterceptTooSmallDownloads), u"0"_qs);
    QCOMPARE(value(WbDownloadsTooSmallSizeValue), u"1048576"_qs);
    QCOMPARE(value(WbDontInterceptDownloadsWithUnwantedExtensions), u"0"_qs);
    QCOMPARE(value(WbDownloadsUnwantedExtensionsList), u"pls"_qs);
}

void TestWebExtensionSettingsManager::ownWriteIsNotReadBack()
{
    WebExtensionSettings settings;
    settings.browser.monitor.skipSmallerThan = 5'000'000'000; // would be read back as 0
    m_manager->setSettings(settings, true);
    QCOMPARE(m_manager->settings().browser.monitor.skipSmallerThan, 5'000'000'000);

    m_client->settings().setAllValues({}, u"WebExtensionSettingsManager"_qs);
    QCOMPARE(m_manager->settings().browser.monitor.skipSmallerThan, 5'000'000'000);
    // Another case is another origin.
    m_client->settings().setAllValues({}, u"webExtensionSettingsManager"_qs);
    QCOMPARE(m_manager->settings().browser.monitor.skipSmallerThan, 0);
}

void TestWebExtensionSettingsManager::changesOfTheApplication()
{
    QSignalSpy changed(m_manager.get(), &WebExtensionSettingsManager::settingsChanged);
    QtAppAbstractSettingsManager &settings = m_client->settings();
    const QString intercept = toString(AppSettings::WbInterceptDownloads);

    settings.setValue(toString(AppSettings::LocaleName), u"de"_qs);
    settings.setValue(intercept, u"0"_qs);
    QVERIFY(changed.isEmpty());
    settings.setValue(intercept, u"1"_qs);
    QCOMPARE(changed, QList<QVariantList>({{false}}));
    settings.setValue(intercept, u"2"_qs); // still true
    QCOMPARE(changed.size(), 1);
    settings.setAllValues({{intercept, u"0"_qs}}, u"application"_qs);
    QCOMPARE(changed.size(), 2);
    settings.setValue(intercept, u"1"_qs);
    QCOMPARE(changed.size(), 3);
    settings.resetToDefaults(u"application"_qs);
    QCOMPARE(changed.size(), 4);
    QVERIFY(!m_manager->settings().browser.monitor.enable);
}

/// The extension's change, then the application's that was made before the first had reached it.
void TestWebExtensionSettingsManager::changesOnBothSides()
{
    WebExtensionSettings settings = m_manager->settings();
    settings.browser.monitor.skipIfKeyPressed = true;
    m_manager->setSettings(settings, true);
    m_client->settings().setValues(values({{AppSettings::WbInterceptDownloads, "1"}}),
                                   u"application"_qs);
    QCOMPARE(described(m_manager->settings().browser.monitor), u"10 0 '' 0 '' 1"_qs);
    QCOMPARE(
        m_client->settings().value(toString(AppSettings::WbDontInterceptDownloadsIfKeyIsPressed)),
        u"1"_qs);
}

QTEST_GUILESS_MAIN(TestWebExtensionSettingsManager)
#include "tst_webextensionsettingsmanager.moc"
