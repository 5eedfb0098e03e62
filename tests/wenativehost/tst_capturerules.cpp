#include "capturerules.h"

#include "keystatewatcher.h"
#include "pmxkovbhipcdownloadinfo.h"
#include "webextensionsettings.h"

#include <QTest>

#include <functional>

using namespace std::string_literals;

namespace {

class HeldKey : public KeyStateWatcher {
public:
    explicit HeldKey(bool pressed) : KeyStateWatcher(45) { setPressed(pressed); }
    /// Nothing may be sampled while a download is judged.
    void update() override { setPressed(!isPressed(false)); }
};

struct Case {
    pmxKovBhIpcDownloadInfo info;
    WebExtensionSettings settings;
    bool keyPressed = false;
};

} // namespace

class TestCaptureRules : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void downloads_data();
    void downloads();
    void extensions_data();
    void extensions();
    void servers_data();
    void servers();
    void nullPointers();
};

void TestCaptureRules::downloads_data()
{
    QTest::addColumn<Case>("input");
    QTest::addColumn<bool>("ignored");
    const auto row = [](const char *title, bool ignored, auto change) {
        Case input;
        input.info.url = "http://files.example.org/archive.tar.gz";
        input.info.suggestedName = "archive.tar.gz";
        input.info.fileSize = 1000;
        change(input, input.settings.browser.monitor);
        QTest::newRow(title) << input << ignored;
    };
    using Monitor = WebExtensionBrowserMonitorSettings;

    row("no rule", false, [](Case &, Monitor &) {});
    row("capture is off", true, [](Case &, Monitor &m) { m.enable = false; });

    row("a byte too small", true, [](Case &c, Monitor &m) {
        c.info.fileSize = 1048575;
        m.skipSmallerThan = 1048576;
    });
    row("just large enough", false, [](Case &c, Monitor &m) {
        c.info.fileSize = 1048576;
        m.skipSmallerThan = 1048576;
    });
    row("unknown size", false, [](Case &c, Monitor &m) {
        c.info.fileSize = ~0ULL;
        m.skipSmallerThan = 1048576;
    });
    row("size 0 without a size rule", false, [](Case &c, Monitor &) { c.info.fileSize = 0; });
    row("size above the signed range", false, [](Case &c, Monitor &m) {
        c.info.fileSize = 1ULL << 63;
        m.skipSmallerThan = 1048576;
    });
    row("negative limit counts as a huge one", true, [](Case &c, Monitor &m) {
        c.info.fileSize = 1ULL << 63;
        m.skipSmallerThan = -1;
    });

    row("key held", true, [](Case &c, Monitor &m) {
        c.keyPressed = true;
        m.skipIfKeyPressed = true;
    });
    row("key not held", false, [](Case &, Monitor &m) { m.skipIfKeyPressed = true; });
    row("key does not matter", false, [](Case &c, Monitor &) { c.keyPressed = true; });

    row("last extension", true, [](Case &, Monitor &m) { m.skipExtensions = "zip gz"; });
    row("not an inner extension", false, [](Case &, Monitor &m) { m.skipExtensions = "tar"; });
    row("extension in capitals", true, [](Case &c, Monitor &m) {
        c.info.suggestedName = "list.PLS";
        m.skipExtensions = "pls m3u";
    });
    row("name without a dot", false, [](Case &c, Monitor &m) {
        c.info.suggestedName = "gz";
        m.skipExtensions = "* gz";
    });
    row("no name", false, [](Case &c, Monitor &m) {
        c.info.suggestedName.clear();
        m.skipExtensions = "* gz";
    });
    row("empty extension and empty list", true,
        [](Case &c, Monitor &) { c.info.suggestedName = "name."; });
    row("empty extension and a list", false, [](Case &c, Monitor &m) {
        c.info.suggestedName = "name.";
        m.skipExtensions = "gz *";
    });

    row("unwanted host", true, [](Case &, Monitor &m) {
        m.skipServersEnabled = true;
        m.skipServers = "other.org example.org";
    });
    row("host rule is off", false, [](Case &, Monitor &m) { m.skipServers = "example.org"; });
    row("host list is empty", false, [](Case &c, Monitor &m) {
        // The host would match the empty mask's "*.".
        c.info.url = "http://example.org./";
        m.skipServersEnabled = true;
    });
    row("URL without a host", false, [](Case &c, Monitor &m) {
        c.info.url = "data:text/plain,x";
        m.skipServersEnabled = true;
        m.skipServers = "*";
    });
}

void TestCaptureRules::downloads()
{
    QFETCH(Case, input);
    QFETCH(bool, ignored);
    HeldKey key(input.keyPressed);
    QCOMPARE(pmxIsCatchedDownloadShoudBeIgnored(&input.info, input.settings, &key) != 0, ignored);
    QCOMPARE(key.isPressed(false), input.keyPressed);
}

void TestCaptureRules::extensions_data()
{
    QTest::addColumn<std::string>("list");
    QTest::addColumn<std::string>("extension");
    QTest::addColumn<bool>("matches");
    QTest::newRow("first") << "pls m3u"s
                           << "pls"s << true;
    QTest::newRow("last") << "pls m3u"s
                          << "m3u"s << true;
    QTest::newRow("other") << "pls m3u"s
                           << "m3"s << false;
    QTest::newRow("wildcard") << "pls m3*"s
                              << "M3U8"s << true;
    QTest::newRow("two spaces hold an empty mask") << "pls  m3u"s
                                                   << ""s << true;
    QTest::newRow("space at the end, too") << "pls "s
                                           << ""s << true;
    QTest::newRow("empty extension, no empty mask") << "pls *"s
                                                    << ""s << false;
    QTest::newRow("no other separator") << "pls,m3u"s
                                        << "m3u"s << false;
}

void TestCaptureRules::extensions()
{
    QFETCH(std::string, list);
    QFETCH(std::string, extension);
    QTEST(IsExtInExtsStr(list.c_str(), extension.c_str()) != 0, "matches");
}

void TestCaptureRules::servers_data()
{
    QTest::addColumn<std::string>("list");
    QTest::addColumn<std::string>("server");
    QTest::addColumn<bool>("matches");
    QTest::newRow("itself") << "a.org example.org"s
                            << "Example.org"s << true;
    QTest::newRow("below it") << "example.org"s
                              << "www.files.example.org"s << true;
    QTest::newRow("same letters at the end") << "example.org"s
                                             << "myexample.org"s << false;
    QTest::newRow("above it") << "www.example.org"s
                              << "example.org"s << false;
    QTest::newRow("wildcard") << "cdn?.*"s
                              << "cdn7.example.org"s << true;
    QTest::newRow("empty server") << "*"s
                                  << ""s << false;
    QTest::newRow("empty mask") << ""s
                                << "example.org"s << false;
}

void TestCaptureRules::servers()
{
    QFETCH(std::string, list);
    QFETCH(std::string, server);
    QTEST(IsServerInServersStr(list.c_str(), server.c_str()) != 0, "matches");
}

void TestCaptureRules::nullPointers()
{
    QVERIFY(!IsExtInExtsStr("", nullptr));
    QVERIFY(!IsExtInExtsStr(nullptr, ""));
    QVERIFY(!IsServerInServersStr("*", nullptr));
    QVERIFY(!IsServerInServersStr(nullptr, "example.org"));
    pmxKovBhIpcDownloadInfo info;
    WebExtensionSettings settings;
    settings.browser.monitor.skipIfKeyPressed = true;
    QVERIFY(!pmxIsCatchedDownloadShoudBeIgnored(&info, settings, nullptr));
}

QTEST_GUILESS_MAIN(TestCaptureRules)
#include "tst_capturerules.moc"
