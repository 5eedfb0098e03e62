#include "urlchecks.h"

#include <QTest>

class TestUrlChecks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void schemes_data();
    void schemes();
    void queries_data();
    void queries();
    void rootHosts_data();
    void rootHosts();
    void longUrls();
};

void TestUrlChecks::schemes_data()
{
    QTest::addColumn<QUrl>("url");
    /// One letter per check that it passes: valid, http, httpS, qt and www, curl.
    QTest::addColumn<QByteArray>("passes");
    const auto row = [](const char *url, const char *passes) {
        QTest::newRow(url) << QUrl(QString::fromUtf8(url)) << QByteArray(passes);
    };
    row("", "");
    row("example.org/a", "");
    row("//example.org/a", "");
    row("http://", "v h q c");
    row("http://example.org:99999/", "");
    row("http://example.org/%zz a", "v h q c");
    row("http://example.org", "v h q c");
    row("HTTP://EXAMPLE.ORG", "v h q c");
    row("https://příklad.example/", "v h s q c");
    row("httpx://example.org", "v");
    row("FTP://example.org/", "v c");
    row("sftp://example.org/", "v c");
    row("ftps://example.org/", "v c");
    row("gopher://example.org/", "v c");
    row("rtmp://example.org/", "v c");
    row("rtsp://example.org/", "v c");
    row("tftp://example.org/", "v c");
    row("rtmps://example.org/", "v");
    row("file:///etc/hosts", "v");
    row("magnet:?xt=urn:btih:a", "v");
    row("data:text/plain,a", "v");
}

void TestUrlChecks::schemes()
{
    QFETCH(const QUrl, url);
    QFETCH(const QByteArray, passes);
    QCOMPARE(isValid(url), passes.contains('v'));
    QCOMPARE(isValidHttpUrl(url), passes.contains('h'));
    QCOMPARE(isValidHttpsUrl(url), passes.contains('s'));
    QCOMPARE(isDownloadableByQt(url), passes.contains('q'));
    QCOMPARE(isDownloadableByWww(url), passes.contains('q'));
    QCOMPARE(isDownloadableByCurl(url), passes.contains('c'));
}

void TestUrlChecks::queries_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QUrl::ParsingMode>("mode");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, const QString &url, const QString &query,
                        QUrl::ParsingMode mode, const QString &result) {
        QTest::newRow(name) << url << query << mode << result;
    };
    row("no query", u"http://h/p#f"_qs, u"a=1"_qs, QUrl::StrictMode, u"http://h/p?a=1#f"_qs);
    row("empty query", u"http://h/p?"_qs, u"a=1"_qs, QUrl::StrictMode, u"http://h/p?a=1"_qs);
    row("behind a query", u"http://h/p?a=1%26b"_qs, u"c=2"_qs, QUrl::StrictMode,
        u"http://h/p?a=1%26b&c=2"_qs);
    row("encoded once", u"http://h/p?a=%C4%9B"_qs, u"b=ě c"_qs, QUrl::TolerantMode,
        u"http://h/p?a=%C4%9B&b=%C4%9B%20c"_qs);
    row("percent signs taken as such", u"http://h/p"_qs, u"a=%41"_qs, QUrl::DecodedMode,
        u"http://h/p?a=%2541"_qs);
    row("nothing added", u"http://h/p?a=1"_qs, QString(), QUrl::StrictMode, u"http://h/p?a=1&"_qs);
    row("nothing at all", u"http://h/p"_qs, QString(), QUrl::StrictMode, u"http://h/p"_qs);
}

void TestUrlChecks::queries()
{
    QFETCH(const QString, url);
    QFETCH(const QString, query);
    QFETCH(const QUrl::ParsingMode, mode);
    const QUrl original(url);
    QTEST(appendQuery(original, query, mode).toString(QUrl::FullyEncoded), "result");
    QCOMPARE(original, QUrl(url));
}

void TestUrlChecks::rootHosts_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("rootHost");
    QTest::addColumn<bool>("equal");
    const auto row = [](const char *host, const char *rootHost, bool equal) {
        QTest::addRow("%s, %s", host, rootHost)
            << QString::fromUtf8(host) << QString::fromUtf8(rootHost) << equal;
    };
    row("example.org", "example.org", true);
    row("EXAMPLE.org", "example.ORG", true);
    row("a.example.org", "example.org", true);
    row("a.b.EXAMPLE.org", "Example.org", true);
    row("badexample.org", "example.org", false);
    row("example.org.evil.com", "example.org", false);
    row("org", "example.org", false);
    row("a.example.org", "a.b.example.org", false);
    row(".example.org", "example.org", false); // nothing before the dot
    row("räksmörgås.se", "RÄKSMÖRGÅS.se", true);
    row("a.xn--rksmrgs-5wao1o.se", "räksmörgås.se", true);
    row("příklad.cz", "xn--pklad-zsa96e.cz", true); // QUrl decodes names of few domains only
    row("example.org", "", false);
    row("127.0.0.1", "0.0.1", true); // an address is no name, but it is compared like one
    row("[::1]", "::1", true);
}

void TestUrlChecks::rootHosts()
{
    QFETCH(const QString, host);
    QFETCH(const QString, rootHost);
    QTEST(isRootHostEqualTo(QUrl(u"https://u@"_qs + host + u":8080/p"_qs), rootHost), "equal");
}

void TestUrlChecks::longUrls()
{
    const QString mebibyte(1 << 20, u'a');
    const QUrl url(u"https://a.example.org/"_qs + mebibyte + u'?' + mebibyte);
    QVERIFY(isValidHttpsUrl(url));
    QVERIFY(isDownloadableByCurl(url));
    QVERIFY(isRootHostEqualTo(url, u"example.org"_qs));
    QVERIFY(!isRootHostEqualTo(url, mebibyte));
    QCOMPARE(appendQuery(url, mebibyte, QUrl::StrictMode).query().size(), (2 << 20) + 1);
    QVERIFY(!isValid(QUrl(mebibyte)));
    QVERIFY(isValid(QUrl(mebibyte + u':')));
    QVERIFY(!isDownloadableByCurl(QUrl(mebibyte + u':')));
}

QTEST_GUILESS_MAIN(TestUrlChecks)
#include "tst_urlchecks.moc"
