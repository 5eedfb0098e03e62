#include "kovdownloadfolder.h"
#include "kovhttpdownload.h"
#include "rows.h"
#include "testhttpserver.h"

#include <QNetworkAccessManager>
#include <QSignalSpy>

#include <memory>

using Server = TestHttpServer;

class TestKovHttpDownload : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Server> m_server;
    QNetworkAccessManager m_network;

    /// Returns the error, or the names of the files that there are now.
    QString download(const KovDownloadRequest &request)
    {
        KovHttpDownload download(
            request, std::make_shared<KovDownloadFolder>(m_folder->path(), u"part"_qs), m_network);
        QSignalSpy finished(&download, &KovHttpDownload::finished);
        download.start();
        if (finished.isEmpty() && !finished.wait(10'000))
            return u"not finished"_qs;
        QCoreApplication::processEvents();
        const QString files = QDir(m_folder->path()).entryList(QDir::Files).join(u' ');
        const QString error = finished.count() == 1 ? finished.at(0).at(0).toString() : u"twice"_qs;
        return error.isEmpty() ? files : u"error: "_qs + error + files;
    }
    QByteArray header(int request, const QByteArray &name) const
    {
        return m_server->requests().value(request).headers.value(name);
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_server = std::make_unique<Server>();
        QVERIFY(m_server->isListening());
    }

    void answers_data()
    {
        const QByteArray named = "Content-Disposition: attachment; filename=\"../sent.txt\"\r\n";
        const Rows<QByteArray, QString, QString, int> row("response", "suggested", "expected",
                                                          "size");
        const auto file = [&row](const char *name, const QByteArray &response, int size) {
            row(name, response, {}, u"f.bin"_qs, size);
        };
        file("empty", Server::ok(""), 0);
        file("big", Server::ok(QByteArray(5'000'000, 'x')), 5'000'000);
        file("length unknown", "HTTP/1.1 200 OK\r\n\r\nhello", 5);
        file(
            "chunked",
            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nhel\r\n2\r\nlo\r\n0\r\n\r\n",
            5);
        file("compressed", Server::ok("\x1f\x8b?", "Content-Encoding: gzip\r\n"), 3);
        row("suggested name", Server::ok("x", named), u"../good.txt"_qs, u"good.txt"_qs, 1);
        row("sent name", Server::ok("x", named), u".."_qs, u"sent.txt"_qs, 1);
        const auto error = [&row](const char *name, const QByteArray &response,
                                  const QString &text) { row(name, response, {}, text, -1); };
        error("an error page", "HTTP/1.1 404 Not Found\r\nContent-Length: 5\r\n\r\nsorry",
              u"Not Found"_qs);
        error("no file", "HTTP/1.1 304 Not Modified\r\n\r\n", u"no file"_qs);
        error("a file that ends early", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhello",
              u"closed"_qs);
        error("no HTTP", "hello\r\n\r\n", u"error"_qs);
        error("a redirect to a file of this machine",
              Server::redirect(QUrl(u"file:///etc/passwd"_qs)), u"redirected to where"_qs);
        error("nobody is there", {}, u"refused"_qs);
    }

    void answers()
    {
        QFETCH(const QByteArray, response);
        QFETCH(const QString, suggested);
        QFETCH(const QString, expected);
        QFETCH(const int, size);
        m_server->answer("/f.bin", response);
        if (response.isEmpty())
            m_server->close();
        const QString result =
            download({.url = m_server->url(u"/f.bin"_qs), .suggestedName = suggested});
        QCOMPARE(result.startsWith(u"error: "), size < 0);
        QVERIFY2(size < 0 ? result.contains(expected) : result == expected, qPrintable(result));
        QCOMPARE(QFileInfo(m_folder->filePath(expected)).size(), size < 0 ? 0 : size);
        QVERIFY(size >= 0 || QDir(m_folder->path()).isEmpty());
    }

    void sendsWhatTheBrowserSent()
    {
        m_server->answer("/a/b?c=%20", Server::ok("x"));
        // Nothing that was smuggled into a value becomes a header.
        QCOMPARE(download({.url = m_server->url(u"/a/b?c=%20"_qs),
                           .referrer = u"http://page/\u20ac"_qs,
                           .userAgent = u"Browser/1.0 (X)\nEvil: 1"_qs,
                           .cookies = {QNetworkCookie("two", "a=b"),
                                       QNetworkCookie("a", "b\r\nEvil: 1")}}),
                 u"b"_qs);
        QCOMPARE(m_server->requests().at(0).method, "GET");
        QCOMPARE(header(0, "referer"), "http://page/\xe2\x82\xac");
        QVERIFY(header(0, "user-agent").startsWith("Browser/1.0 (X)"));
        QCOMPARE(header(0, "accept-encoding"), "identity");
        QCOMPARE(header(0, "cookie"), "two=a=b");
        QVERIFY(!m_server->requests().at(0).headers.contains("evil"));
    }

    void posts()
    {
        const QByteArray body("a=1&b=\0\xff", 8);
        m_server->answer("/again",
                         Server::redirect(m_server->url(u"/form"_qs), "307 Temporary Redirect"));
        m_server->answer("/form", Server::redirect(m_server->url(u"/file"_qs), "303 See Other"));
        m_server->answer("/file", Server::ok("result"));
        QCOMPARE(download({.url = m_server->url(u"/again"_qs), .postData = body}), u"file"_qs);
        QByteArrayList seen;
        const QList<Server::Request> requests = m_server->requests();
        for (const Server::Request &request : requests)
            seen += request.method + ' ' + request.path + ' ' + request.body;
        QCOMPARE(seen, (QByteArrayList{"POST /again " + body, "POST /form " + body, "GET /file "}));
        QCOMPARE(header(0, "content-type"), "application/x-www-form-urlencoded");
    }

    void followsTwentyRedirects()
    {
        for (int i = 0; i < 21; ++i) {
            m_server->answer("/" + QByteArray::number(i),
                             Server::redirect(m_server->url(u'/' + QString::number(i + 1))));
        }
        m_server->answer("/21", Server::ok("x"));
        QVERIFY(download({.url = m_server->url(u"/0"_qs)}).startsWith(u"error: "));
        QCOMPARE(download({.url = m_server->url(u"/1"_qs)}), u"21"_qs);
    }

    void cookiesAndReferrerGoWhereTheyBelong()
    {
        Server other;
        m_server->answer("/a/1",
                         Server::redirect(m_server->url(u"/b/2"_qs), "302 Found",
                                          "Set-Cookie: new=2; Path=/\r\n"));
        m_server->answer("/b/2", Server::redirect(other.url(u"/3"_qs, u"localhost"_qs)));
        other.answer("/3", Server::ok("x"));
        QNetworkCookie foreign("foreign", "3");
        foreign.setDomain(u"example.org"_qs);
        QCOMPARE(download({.url = m_server->url(u"/a/1"_qs),
                           .referrer = m_server->url(u"/page?secret#there"_qs).toString(),
                           .cookies = {QNetworkCookie("given", "1"), foreign}}),
                 u"3"_qs);
        QCOMPARE(header(0, "cookie"), "given=1");
        const QByteArray second = header(1, "cookie");
        QVERIFY(second == "given=1; new=2" || second == "new=2; given=1");
        QVERIFY(!other.requests().at(0).headers.contains("cookie"));
        QCOMPARE(header(1, "referer"), m_server->url(u"/page?secret"_qs).toEncoded());
        QCOMPARE(other.requests().at(0).headers.value("referer"),
                 m_server->url(u"/"_qs).toEncoded());
    }
};

QTEST_GUILESS_MAIN(TestKovHttpDownload)
#include "tst_kovhttpdownload.moc"
