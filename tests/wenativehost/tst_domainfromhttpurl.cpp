#include "domainfromhttpurl.h"

#include <QTest>

#include <random>
#include <regex>
#include <string>

using namespace std::string_literals;

class TestDomainFromHttpUrl : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void urls_data();
    void urls();
    void asTheExpressionSays();
    void longUrls_data();
    void longUrls();
};

void TestDomainFromHttpUrl::urls_data()
{
    QTest::addColumn<std::string>("url");
    QTest::addColumn<std::string>("domain");

    QTest::newRow("plain") << "http://example.org/a"s
                           << "example.org"s;
    QTest::newRow("only a host") << "HTTPS://Example.ORG"s
                                 << "Example.ORG"s;
    QTest::newRow("port") << "http://example.org:8080/a"s
                          << "example.org"s;
    QTest::newRow("query") << "http://example.org?a=b"s
                           << "example.org"s;
    QTest::newRow("fragment") << "http://example.org#a"s
                              << "example.org"s;
    QTest::newRow("user, kept") << "http://user@example.org/"s
                                << "user@example.org"s;
    QTest::newRow("later slashes") << "http://example.org/a//b.c/d"s
                                   << "b.c"s;
    QTest::newRow("later slashes without a name") << "http://example.org/a///?b"s
                                                  << "example.org"s;
    QTest::newRow("three slashes") << "file:///etc/hosts"s
                                   << "etc"s;
    QTest::newRow("no slashes") << "example.org"s
                                << ""s;
    QTest::newRow("nothing after the slashes") << "http://"s
                                               << ""s;
    QTest::newRow("empty") << ""s
                           << ""s;
    QTest::newRow("line break in the name") << "//a\nb/c"s
                                            << "a\nb"s;
    QTest::newRow("line break before the slashes") << "a\n//b"s
                                                   << ""s;
    QTest::newRow("line break after the name") << "//b/\r"s
                                               << ""s;
    QTest::newRow("slashes behind a line break") << "//a\n//b"s
                                                 << "a\n"s;
}

void TestDomainFromHttpUrl::urls()
{
    QFETCH(std::string, url);
    QTEST(domainFromHttpUrl(url), "domain");
}

void TestDomainFromHttpUrl::asTheExpressionSays()
{
    const std::regex expression("^.*//([^/?#:]+).*$", std::regex::ECMAScript | std::regex::icase);
    const std::string alphabet = "/////:?#aBcd\n\r";
    std::mt19937 random(20240817);
    int found = 0;
    for (int i = 0; i < 40'000; ++i) {
        std::string url(random() % 13, '\0');
        for (char &c : url)
            c = alphabet[random() % alphabet.size()];
        std::smatch match;
        const std::string expected =
            std::regex_search(url, match, expression) ? match[1].str() : ""s;
        const std::string domain = domainFromHttpUrl(url);
        if (domain != expected)
            qWarning("for \"%s\"", QByteArray::fromStdString(url).toPercentEncoding().constData());
        QCOMPARE(domain, expected);
        found += !expected.empty();
    }
    QVERIFY(found > 2'000);
}

void TestDomainFromHttpUrl::longUrls_data()
{
    QTest::addColumn<std::string>("url");
    QTest::addColumn<std::string>("domain");
    constexpr std::size_t Length = 4'000'000;
    const std::string letters(Length, 'a');
    QTest::newRow("long path") << "http://host/" + letters << "host"s;
    QTest::newRow("long name") << "http://" + letters << letters;
    const std::string slashes(Length, '/');
    const std::string lineBreaks(Length, '\n');
    QTest::newRow("only slashes") << slashes << ""s;
    QTest::newRow("name before slashes") << "//a"s.append(slashes) << "a"s;
    QTest::newRow("line breaks") << "//a"s.append(lineBreaks) << "a"s.append(lineBreaks);
}

void TestDomainFromHttpUrl::longUrls()
{
    QFETCH(std::string, url);
    QFETCH(std::string, domain);
    QVERIFY(domainFromHttpUrl(url) == domain);
}

QTEST_GUILESS_MAIN(TestDomainFromHttpUrl)
#include "tst_domainfromhttpurl.moc"
