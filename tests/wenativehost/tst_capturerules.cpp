#include "capturerules.h"
#include "domainfromhttpurl.h"
#include "keystatewatcher.h"
#include "pmxjsonserializeobject.h"
#include "pmxkovbhipcdownloadinfo.h"
#include "vectors.h"
#include "webextensionsettings.h"
#include "wildcardmatch.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cctype>
#include <clocale>
#include <random>
#include <regex>

namespace {

class PressedKey : public KeyStateWatcher {
public:
    explicit PressedKey(bool pressed) : KeyStateWatcher(45) { setPressed(pressed); }
    /// The key must not be sampled while the rules are applied.
    void update() override { setPressed(!isPressed(false)); }
};

void read(pmxSerializable &record, const QByteArray &json)
{
    if (!pmxJsonSerializeObject(record, QByteArray(json).replace('\'', '"').toStdString(), 0))
        qFatal("the test's own text is malformed");
}

/// The literal definition of a match; its cost is exponential in the number of stars.
bool matchesByDefinition(const char *str, const char *mask)
{
    if (!*str)
        return !*mask;
    if (!*mask)
        return false;
    if (*mask == '*') {
        if (!mask[1])
            return true;
        for (; *str; ++str) {
            if (matchesByDefinition(str, mask + 1))
                return true;
        }
        return false;
    }
    if (*mask == '?' || *mask == *str)
        return matchesByDefinition(str + 1, mask + 1);
    return false;
}

std::string randomText(std::mt19937 &random, const std::string &alphabet, std::size_t maxLength)
{
    std::string text(random() % (maxLength + 1), '\0');
    for (char &c : text)
        c = alphabet[random() % alphabet.size()];
    return text;
}

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return std::tolower(c); });
    return text;
}

} // namespace

class TestCaptureRules : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void downloads_data()
    {
        QTest::addColumn<bool>("ignored");
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QByteArray>("download");
        const auto row = [](const char *title, bool ignored, const char *settings,
                            const char *download = "") {
            QTest::newRow(title) << ignored << QByteArray(settings) << QByteArray(download);
        };
        row("capture is off", true, ",'enable':false");
        row("a byte too small", true, ",'skipSmallerThan':'1048576'", ",'fileSize':'1048575'");
        row("just large enough", false, ",'skipSmallerThan':'1048576'", ",'fileSize':'1048576'");
        row("unknown size", false, ",'skipSmallerThan':'1048576'", ",'fileSize':'-1'");
        row("negative limit counts as a huge one", true, ",'skipSmallerThan':'-1'",
            ",'fileSize':'9223372036854775808'");
        row("key held", true, ",'skipIfKeyPressed':true");
        row("last extension", true, ",'skipExtensions':'zip gz'");
        row("name without a dot", false, ",'skipExtensions':'* gz'", ",'suggestedName':'gz'");
        row("empty extension, empty list", true, "", ",'suggestedName':'name.'");
        row("empty extension, two spaces in a list", true, ",'skipExtensions':'gz  *'",
            ",'suggestedName':'name.'");
        row("empty extension and a list", false, ",'skipExtensions':'gz *'",
            ",'suggestedName':'name.'");
        row("host rule is off", false, ",'skipServers':'example.org'");
    }

    void downloads()
    {
        QFETCH(const bool, ignored);
        QFETCH(const QByteArray, settings);
        QFETCH(const QByteArray, download);
        WebExtensionSettings rules;
        read(rules, "{'browser':{'monitor':{'enable':true" + settings + "}}}");
        pmxKovBhIpcDownloadInfo info;
        info.suggestedName = "archive.tar.gz";
        read(info, "{'url':'http://files.example.org/archive.tar.gz'" + download + "}");
        PressedKey key(true);
        QCOMPARE(pmxIsCatchedDownloadShoudBeIgnored(&info, rules, &key) != 0, ignored);
        QVERIFY(key.isPressed(false));
        PressedKey released(false);
        QCOMPARE(pmxIsCatchedDownloadShoudBeIgnored(&info, rules, &released) != 0,
                 ignored && !settings.contains("Key"));
    }

    /// A list of servers, a host, and whether the list holds it; the extension is held to the same.
    void servers_data() { ADD_VECTORS("servers.json", "servers"); }
    void servers()
    {
        const VectorRow row;
        WebExtensionSettings rules;
        read(rules,
             "{'browser':{'monitor':{'enable':true,'skipServersEnabled':true,'skipServers':'"
                 + row.bytes(0) + "'}}}");
        pmxKovBhIpcDownloadInfo info;
        read(info, "{'url':'http://" + row.bytes(1) + "'}");
        QCOMPARE(pmxIsCatchedDownloadShoudBeIgnored(&info, rules, nullptr) != 0,
                 row.at(2).toBool());
    }

    /// A locale in which the C library's tolower() does not change an "I".
    void caseInTurkish()
    {
        const QTemporaryDir folder;
        QCOMPARE(QProcess::execute(u"localedef"_qs,
                                   {u"-i"_qs, u"tr_TR"_qs, u"-f"_qs, u"UTF-8"_qs,
                                    folder.filePath(u"tr_TR.UTF-8"_qs)}),
                 0);
        qputenv("LOCPATH", folder.path().toUtf8());
        QVERIFY(std::setlocale(LC_CTYPE, "tr_TR.UTF-8"));
        QVERIFY(IsExtInExtsStr("iso ZIP", "ISO") && IsExtInExtsStr("iso ZIP", "zIp"));
        QVERIFY(IsServerInServersStr("wikipedia.org", "TR.WIKIPEDIA.ORG"));
        std::setlocale(LC_CTYPE, "C");
    }

    void noText()
    {
        for (const char *const text : {"a", static_cast<const char *>(nullptr)}) {
            QVERIFY(!strcmp_m(text, nullptr) && !strcmp_m(nullptr, text));
            QVERIFY(!strcmpi_m(text, nullptr) && !strcmpi_m(nullptr, text));
            QVERIFY(!IsExtInExtsStr(text, nullptr) && !IsExtInExtsStr(nullptr, text));
            QVERIFY(!IsServerInServersStr(text, nullptr) && !IsServerInServersStr(nullptr, text));
        }
    }

    void wildcardsAsDefined()
    {
        std::mt19937 random(20240817);
        int matched = 0;
        for (int i = 0; i < 200'000; ++i) {
            const std::string text = randomText(random, "aAb*", 9);
            const std::string mask = randomText(random, "aAb*?*", 7);
            const bool expected = matchesByDefinition(text.c_str(), mask.c_str());
            const bool withoutCase = matchesByDefinition(lower(text).c_str(), lower(mask).c_str());
            const std::string what = std::string(mask).append(" against ").append(text);
            QVERIFY2((strcmp_m(text.c_str(), mask.c_str()) != nullptr) == expected, what.c_str());
            QVERIFY2((strcmpi_m(text.c_str(), mask.c_str()) != nullptr) == withoutCase,
                     what.c_str());
            matched += expected;
        }
        QVERIFY(matched > 20'000);
    }

    /// With the recursive definition this would take forever.
    void manyStars()
    {
        const std::string text(10'000, 'a');
        QVERIFY(!strcmpi_m(text.c_str(), "*A*A*A*A*A*A*A*A*B"));
        QVERIFY(strcmp_m((text + "b").c_str(), "*a*a*a*a*a*a*a*a*b"));
    }

    void domainAsTheExpressionSays()
    {
        const std::regex expression("^.*//([^/?#:]+).*$",
                                    std::regex::ECMAScript | std::regex::icase);
        std::mt19937 random(20240817);
        int found = 0;
        for (int i = 0; i < 40'000; ++i) {
            const std::string url = randomText(random, "/////:?#aBcd\n\r", 12);
            std::smatch match;
            std::string expected;
            if (std::regex_search(url, match, expression))
                expected = match[1].str();
            QVERIFY2(domainFromHttpUrl(url) == expected,
                     QByteArray::fromStdString(url).toPercentEncoding().constData());
            found += !expected.empty();
        }
        QVERIFY(found > 2'000);
    }

    void domainOfLongUrls()
    {
        const std::string slashes(4'000'000, '/');
        QVERIFY(domainFromHttpUrl("//a" + slashes) == "a");
    }
};

QTEST_GUILESS_MAIN(TestCaptureRules)
#include "tst_capturerules.moc"
