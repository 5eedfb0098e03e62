#include "kovdownloadfolder.h"
#include "kovhttpdownload.h"
#include "testhttpserver.h"

#include <QDir>
#include <QFile>
#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class TestKovHttpDownload : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void supports_data();
    void supports();
    void downloads_data();
    void downloads();
    void fails_data();
    void fails();
    void names_data();
    void names();
    void sends_what_the_browser_sent();
    void posts();
    void header_values_stay_in_their_headers();
    void follows_redirects_data();
    void follows_redirects();
    void cookies_go_where_they_belong();
    void nobody_is_there();

private:
    /// Returns the error.
    QString download(const KovDownloadRequest &request);
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files); }
    QByteArray content(const QString &name) const;
    QByteArray header(int request, const QByteArray &name) const
    {
        return m_server->requests().value(request).headers.value(name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<TestHttpServer> m_server;
    QNetworkAccessManager m_network;
};

void TestKovHttpDownload::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<TestHttpServer>();
    QVERIFY(m_server->isListening());
}

QString TestKovHttpDownload::download(const KovDownloadRequest &request)
{
    KovHttpDownload download(
        request, std::make_shared<KovDownloadFolder>(m_folder->path(), u"part"_qs), m_network);
    QSignalSpy finished(&download, &KovHttpDownload::finished);
    download.start();
    if (finished.isEmpty() && !finished.wait(10'000))
        return u"not finished"_qs;
    QCoreApplication::processEvents();
    return finished.count() == 1 ? finished.at(0).at(0).toString() : u"finished twice"_qs;
}

QByteArray TestKovHttpDownload::content(const QString &name) const
{
    QFile file(m_folder->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "cannot be read";
}

void TestKovHttpDownload::supports_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("expected");
    QTest::newRow("http") << u"http://h/"_qs << true;
    QTest::newRow("https") << u"HTTPS://h:1/?q"_qs << true;
    QTest::newRow("file") << u"file:///etc/passwd"_qs << false;
    QTest::newRow("data") << u"data:,x"_qs << false;
    QTest::newRow("ftp") << u"ftp://h/f"_qs << false;
    QTest::newRow("no host") << u"http:///x"_qs << false;
    QTest::newRow("relative") << u"h/x"_qs << false;
    QTest::newRow("empty") << QString() << false;
}

void TestKovHttpDownload::supports()
{
    QFETCH(QString, url);
    QTEST(KovHttpDownload::isSupported(QUrl(url)), "expected");
}

void TestKovHttpDownload::downloads_data()
{
    QTest::addColumn<QByteArray>("response");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray big(5'000'000, 'x');
    QTest::newRow("small") << TestHttpServer::ok("hello") << QByteArray("hello");
    QTest::newRow("empty") << TestHttpServer::ok("") << QByteArray();
    QTest::newRow("big") << TestHttpServer::ok(big) << big;
    QTest::newRow("length unknown")
        << QByteArray("HTTP/1.1 200 OK\r\n\r\nhello") << QByteArray("hello");
    QTest::newRow("chunked") << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                           "3\r\nhel\r\n2\r\nlo\r\n0\r\n\r\n")
                             << QByteArray("hello");
    QTest::newRow("compressed by the server")
        << TestHttpServer::ok("\x1f\x8b?", "Content-Encoding: gzip\r\n") << QByteArray("\x1f\x8b?");
}

void TestKovHttpDownload::downloads()
{
    QFETCH(QByteArray, response);
    QFETCH(QByteArray, expected);
    m_server->answer("/f", response);
    QCOMPARE(download({.url = m_server->url(u"/f"_qs)}), QString());
    QCOMPARE(files(), QStringList{u"f"_qs});
    QVERIFY(content(u"f"_qs) == expected);
}

void TestKovHttpDownload::fails_data()
{
    QTest::addColumn<QByteArray>("response");
    QTest::addColumn<QString>("expected");
    QTest::newRow("an error page")
        << QByteArray("HTTP/1.1 404 Not Found\r\nContent-Length: 5\r\n\r\nsorry")
        << u"Not Found"_qs;
    QTest::newRow("an answer without a file")
        << QByteArray("HTTP/1.1 304 Not Modified\r\n\r\n") << u"no file"_qs;
    QTest::newRow("a file that ends early")
        << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhello") << u"closed"_qs;
    QTest::newRow("no HTTP") << QByteArray("hello\r\n\r\n") << u""_qs;
    QTest::newRow("a redirect to a file of this machine")
        << TestHttpServer::redirect(QUrl(u"file:///etc/passwd"_qs)) << u"redirected to where"_qs;
}

void TestKovHttpDownload::fails()
{
    QFETCH(QByteArray, response);
    QFETCH(QString, expected);
    m_server->answer("/f", response);
    const QString error = download({.url = m_server->url(u"/f"_qs)});
    QVERIFY(!error.isEmpty());
    QVERIFY2(error.contains(expected), qPrintable(error));
    QCOMPARE(files(), QStringList());
}

void TestKovHttpDownload::names_data()
{
    QTest::addColumn<QString>("suggested");
    QTest::addColumn<QByteArray>("headers");
    QTest::addColumn<QString>("expected");
    const QByteArray header = "Content-Disposition: attachment; filename=\"../sent.txt\"\r\n";
    QTest::newRow("suggested") << u"../good.txt"_qs << header << u"good.txt"_qs;
    QTest::newRow("sent") << u".."_qs << header << u"sent.txt"_qs;
    QTest::newRow("of the URL") << QString() << QByteArray() << u"final.bin"_qs;
}

void TestKovHttpDownload::names()
{
    QFETCH(QString, suggested);
    QFETCH(QByteArray, headers);
    QFETCH(QString, expected);
    m_server->answer("/first", TestHttpServer::redirect(m_server->url(u"/final.bin"_qs)));
    m_server->answer("/final.bin", TestHttpServer::ok("x", headers));
    QCOMPARE(download({.url = m_server->url(u"/first"_qs), .suggestedName = suggested}), QString());
    QCOMPARE(files(), QStringList{expected});
}

void TestKovHttpDownload::sends_what_the_browser_sent()
{
    m_server->answer("/a/b?c=%20", TestHttpServer::ok("x"));
    QCOMPARE(download({.url = m_server->url(u"/a/b?c=%20"_qs),
                       .referrer = u"http://page/\u20ac"_qs,
                       .userAgent = u"Browser/1.0 (X)"_qs,
                       .cookies = {QNetworkCookie("one", "1"), QNetworkCookie("two", "a=b")}}),
             QString());
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests().at(0).method, "GET");
    QCOMPARE(header(0, "referer"), "http://page/\xe2\x82\xac");
    QCOMPARE(header(0, "user-agent"), "Browser/1.0 (X)");
    QCOMPARE(header(0, "accept-encoding"), "identity");
    QList<QByteArray> cookies = header(0, "cookie").split(';');
    for (QByteArray &cookie : cookies)
        cookie = cookie.trimmed();
    std::sort(cookies.begin(), cookies.end());
    QCOMPARE(cookies, (QList<QByteArray>{"one=1", "two=a=b"}));
}

void TestKovHttpDownload::posts()
{
    const QByteArray body("a=1&b=\0\xff", 8);
    m_server->answer("/form",
                     TestHttpServer::redirect(m_server->url(u"/file"_qs), "303 See Other"));
    m_server->answer(
        "/again", TestHttpServer::redirect(m_server->url(u"/form"_qs), "307 Temporary Redirect"));
    m_server->answer("/file", TestHttpServer::ok("result"));
    QCOMPARE(download({.url = m_server->url(u"/again"_qs), .postData = body}), QString());
    QList<QByteArray> seen;
    const QList<TestHttpServer::Request> requests = m_server->requests();
    for (const TestHttpServer::Request &request : requests)
        seen << request.method << request.path << request.body;
    QCOMPARE(
        seen,
        (QList<QByteArray>{"POST", "/again", body, "POST", "/form", body, "GET", "/file", ""}));
    QCOMPARE(header(0, "content-type"), "application/x-www-form-urlencoded");
    QCOMPARE(content(u"file"_qs), "result");
}

void TestKovHttpDownload::header_values_stay_in_their_headers()
{
    m_server->answer("/f", TestHttpServer::ok("x"));
    QCOMPARE(download({.url = m_server->url(u"/f"_qs),
                       .referrer = u"http://page/\r\nEvil: 1"_qs,
                       .userAgent = u"B\nEvil: 1"_qs,
                       .cookies = {QNetworkCookie("a", "b\r\nEvil: 1"), QNetworkCookie("c", "d")}}),
             QString());
    QCOMPARE(m_server->requests().size(), 1);
    QVERIFY(!m_server->requests().at(0).headers.contains("evil"));
    QCOMPARE(header(0, "cookie"), "c=d");
}

void TestKovHttpDownload::follows_redirects_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("expected");
    QTest::newRow("one") << 1 << true;
    QTest::newRow("twenty") << 20 << true;
    QTest::newRow("for ever") << 21 << false;
}

void TestKovHttpDownload::follows_redirects()
{
    QFETCH(int, count);
    QFETCH(bool, expected);
    for (int i = 0; i < count; ++i) {
        m_server->answer("/" + QByteArray::number(i),
                         TestHttpServer::redirect(m_server->url(u'/' + QString::number(i + 1))));
    }
    m_server->answer("/" + QByteArray::number(count), TestHttpServer::ok("x"));
    QCOMPARE(download({.url = m_server->url(u"/0"_qs)}).isEmpty(), expected);
    QCOMPARE(files().size(), expected ? 1 : 0);
}

void TestKovHttpDownload::cookies_go_where_they_belong()
{
    TestHttpServer other;
    m_server->answer("/a/1",
                     TestHttpServer::redirect(m_server->url(u"/b/2"_qs), "302 Found",
                                              "Set-Cookie: new=2; Path=/\r\n"));
    m_server->answer("/b/2", TestHttpServer::redirect(other.url(u"/3"_qs, u"localhost"_qs)));
    other.answer("/3", TestHttpServer::ok("x"));
    QNetworkCookie foreign("foreign", "3");
    foreign.setDomain(u"example.org"_qs);
    QCOMPARE(download({.url = m_server->url(u"/a/1"_qs),
                       .cookies = {QNetworkCookie("given", "1"), foreign}}),
             QString());
    QCOMPARE(header(0, "cookie"), "given=1");
    const QByteArray second = header(1, "cookie");
    QVERIFY(second == "given=1; new=2" || second == "new=2; given=1");
    QCOMPARE(other.requests().size(), 1);
    QCOMPARE(other.requests().at(0).headers.value("cookie"), QByteArray());
}

void TestKovHttpDownload::nobody_is_there()
{
    m_server->close();
    QVERIFY(download({.url = m_server->url(u"/f"_qs)}).contains(u"refused"));
    QCOMPARE(files(), QStringList());
}

QTEST_GUILESS_MAIN(TestKovHttpDownload)
#include "tst_kovhttpdownload.moc"
