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
private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_server = std::make_unique<Server>();
        QVERIFY(m_server->isListening());
    }

    void supports()
    {
        for (const QString &url : {u"http://h/"_qs, u"HTTPS://h:1/?q"_qs})
            QVERIFY2(KovHttpDownload::isSupported(QUrl(url)), qPrintable(url));
        for (const QString &url : {u"file:///etc/passwd"_qs, u"data:,x"_qs, u"ftp://h/f"_qs,
                                   u"http:///x"_qs, u"h/x"_qs, QString()})
            QVERIFY2(!KovHttpDownload::isSupported(QUrl(url)), qPrintable(url));
    }

    void downloads_data()
    {
        const Rows<QByteArray, QByteArray> row("response", "expected");
        row("empty", Server::ok(""), {});
        row("big", Server::ok(QByteArray(5'000'000, 'x')), QByteArray(5'000'000, 'x'));
        row("length unknown", "HTTP/1.1 200 OK\r\n\r\nhello", "hello");
        row("chunked",
            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nhel\r\n2\r\nlo\r\n0\r\n\r\n",
            "hello");
        row("compressed by the server", Server::ok("\x1f\x8b?", "Content-Encoding: gzip\r\n"),
            "\x1f\x8b?");
    }

    void downloads()
    {
        QFETCH(const QByteArray, response);
        QFETCH(const QByteArray, expected);
        m_server->answer("/f", response);
        QCOMPARE(download({.url = m_server->url(u"/f"_qs)}), QString());
        QCOMPARE(files(), QStringList{u"f"_qs});
        QFile file(m_folder->filePath(u"f"_qs));
        QVERIFY(file.open(QIODevice::ReadOnly) && file.readAll() == expected);
    }

    void fails_data()
    {
        const Rows<QByteArray, QString> row("response", "expected");
        row("an error page", "HTTP/1.1 404 Not Found\r\nContent-Length: 5\r\n\r\nsorry",
            u"Not Found"_qs);
        row("an answer without a file", "HTTP/1.1 304 Not Modified\r\n\r\n", u"no file"_qs);
        row("a file that ends early", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhello",
            u"closed"_qs);
        row("no HTTP", "hello\r\n\r\n", {});
        row("a redirect to a file of this machine",
            Server::redirect(QUrl(u"file:///etc/passwd"_qs)), u"redirected to where"_qs);
        row("nobody is there", {}, u"refused"_qs);
    }

    void fails()
    {
        QFETCH(const QByteArray, response);
        QFETCH(const QString, expected);
        m_server->answer("/f", response);
        if (response.isEmpty())
            m_server->close();
        const QString error = download({.url = m_server->url(u"/f"_qs)});
        QVERIFY2(!error.isEmpty() && error.contains(expected), qPrintable(error));
        QCOMPARE(files(), QStringList());
    }

    void names_data()
    {
        const Rows<QString, QByteArray, QString> row("suggested", "headers", "expected");
        const QByteArray header = "Content-Disposition: attachment; filename=\"../sent.txt\"\r\n";
        row("suggested", u"../good.txt"_qs, header, u"good.txt"_qs);
        row("sent", u".."_qs, header, u"sent.txt"_qs);
        row("of the URL", {}, {}, u"final.bin"_qs);
    }

    void names()
    {
        QFETCH(const QString, suggested);
        QFETCH(const QByteArray, headers);
        QFETCH(const QString, expected);
        m_server->answer("/first", Server::redirect(m_server->url(u"/final.bin"_qs)));
        m_server->answer("/final.bin", Server::ok("x", headers));
        QCOMPARE(download({.url = m_server->url(u"/first"_qs), .suggestedName = suggested}),
                 QString());
        QCOMPARE(files(), QStringList{expected});
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
                 QString());
        QCOMPARE(m_server->requests().size(), 1);
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
        QCOMPARE(download({.url = m_server->url(u"/again"_qs), .postData = body}), QString());
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
        QVERIFY(!download({.url = m_server->url(u"/0"_qs)}).isEmpty());
        QCOMPARE(files(), QStringList());
        QCOMPARE(download({.url = m_server->url(u"/1"_qs)}), QString());
        QCOMPARE(files(), QStringList{u"21"_qs});
    }

    void cookiesGoWhereTheyBelong()
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
                           .cookies = {QNetworkCookie("given", "1"), foreign}}),
                 QString());
        QCOMPARE(header(0, "cookie"), "given=1");
        const QByteArray second = header(1, "cookie");
        QVERIFY(second == "given=1; new=2" || second == "new=2; given=1");
        QCOMPARE(other.requests().size(), 1);
        QVERIFY(!other.requests().at(0).headers.contains("cookie"));
    }

private:
    /// Returns the error.

    QString download(const KovDownloadRequest &request)
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
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files); }
    QByteArray header(int request, const QByteArray &name) const
    {
        return m_server->requests().value(request).headers.value(name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Server> m_server;
    QNetworkAccessManager m_network;
};

QTEST_GUILESS_MAIN(TestKovHttpDownload)
#include "tst_kovhttpdownload.moc"
