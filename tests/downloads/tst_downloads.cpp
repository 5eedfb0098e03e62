// What the host knows of downloads apart from their records: kinds of files, cookies, URLs and
// header blocks.

#include "abstractdownloadsmodulemetatypes.h"
#include "abstractfiletypedetector.h"
#include "cookiestring.h"
#include "httpheaderblock.h"
#include "rows.h"
#include "urlchecks.h"

class TestDownloads : public QObject {
    Q_OBJECT
private Q_SLOTS:
    /// The first of all, as the others use some of the types.
    void registersMetatypesInOrder()
    {
        const QByteArray names =
            "AbstractDownloadPersistentInfo|BitFlagsUpdateMode|AbstractDownloadCommand"
            "|NetworkTrafficDirection|AbstractError|QVector<qint64>|QVector<quint64>"
            "|AbstractDownloadCreatedBy|AbstractDownloadPersistentInfoSortByPlusOrder|QtHostAndPort"
            "|QtConnectionsMap|AbstractNewDownloadsRequest|AbstractNewDownloadsRequestJob"
            "|AbstractDownloadFileOps::FileInitializeOperation"
            "|QVector<AbstractDownloadFileOps::FileInitializeOperation>|AbstractDownloadPriority"
            "|AbstractDownloadMergeOptions|AbstractDownloadMergeTaskOptions|CompareDownloadsResult"
            "|AbstractDownloadAbortReason|AbstractDownloadType|QVector<AbstractDownloadType>"
            "|AbstractDownloadFileExistsAction";
        qtRegisterAbstractDownloadsModuleMetatypes();
        int previous = 0;
        for (const QByteArray &name : names.split('|')) {
            const int id = QMetaType::fromName(name).id();
            QVERIFY2(id > previous, name);
            previous = id;
        }
    }

    void fileTypes()
    {
        using Type = AbstractFileType;
        const QList<std::pair<Type, QString>> expected{
            {Type::Video, u"a.avi|b.MP4|c.tar.mkv|.vob|m.rmvb|x.f4a|y.mpg2|z.m2ts"_qs},
            {Type::Video, u"webm|a.ogg|a.3gp|a.rm|a.m4p"_qs}, // also of music
            {Type::Music, u"a.mp3|a.iklax|a.ivs|a.Flac|a.m4b|a.raw|a.wma|a.mid"_qs},
            {Type::Document, u"a.doc|a.accdb|Pdf|a.txt|a.sxm|a.xlsb|a.csv|a.epub"_qs},
            {Type::Image, u"a.tif|a.JPEG|a.j2k|a.ico|a.png|a.webp|a.svg"_qs},
            // The Kelvin sign is a "k" in lower case only where more than ASCII is folded.
            {Type::Unknown, u"|.|a.|mp4.|a.zip|a.pdf |a.mp4/b|a.mp5|a.mp4?x=1|a.m\u212Av"_qs}};
        for (const auto &[type, names] : expected)
            for (const QString &name : names.split(u'|'))
                QVERIFY2(AbstractFileTypeDetector().typeFromFileName(name) == type,
                         qPrintable(name));
    }

    void cookies()
    {
        const auto parsed = [](const QString &text, QChar separator = u';') {
            QByteArrayList found;
            for (const QNetworkCookie &cookie : cookiesFromString(text, separator))
                found += cookie.name() + " is " + cookie.value();
            return found.join(", ");
        };
        QCOMPARE(parsed(u";;; ;"_qs), "");
        QCOMPARE(parsed(u"a=1;b; c=3;d"_qs), "a is 1, c is 3");
        QCOMPARE(parsed(u"a==b=c="_qs), "a is =b=c=");
        QCOMPARE(parsed(u"=v; n=; ="_qs), " is v, n is ,  is ");
        QCOMPARE(parsed(u"\t a = 1 \n; b=2"_qs), "a  is  1, b is 2");
        QCOMPARE(parsed(u"a=\"1;b=2\",x"_qs), "a is \"1, b is 2\",x");
        QCOMPARE(parsed(u"ě=ř😀"_qs), "ě is ř😀");
        QCOMPARE(parsed(u"n=1xm=2Xy"_qs, u'x'), "n is 1, m is 2Xy");

        QNetworkCookie withMore("\xc4\x9b", "\uFEFF3");
        withMore.setPath(u"/p"_qs);
        withMore.setSecure(true);
        const QNetworkCookie one("a", "1");
        QCOMPARE(cookiesToString({withMore, one, one, QNetworkCookie("", "")}, u';'),
                 u"ě=\uFEFF3;a=1;a=1;="_qs);
    }

    void schemes()
    {
        const auto passes = [](const QString &text) {
            const QUrl url(text);
            QByteArray passed;
            passed += isValid(url) ? "valid " : "";
            passed += isValidHttpUrl(url) ? "http " : "";
            passed += isValidHttpsUrl(url) ? "https " : "";
            passed += isDownloadableByQt(url) && isDownloadableByWww(url) ? "qt " : "";
            passed += isDownloadableByCurl(url) ? "curl" : "";
            return passed;
        };
        for (const QString &url : {u""_qs, u"example.org/a"_qs, u"//h/a"_qs, u"http://h:99999/"_qs})
            QCOMPARE(passes(url), "");
        for (const QString &url : {u"http://"_qs, u"http://h/%zz a"_qs, u"HTTP://EXAMPLE.ORG"_qs})
            QCOMPARE(passes(url), "valid http qt curl");
        QCOMPARE(passes(u"https://příklad.example/"_qs), "valid http https qt curl");
        for (const QString &scheme :
             {u"FTP"_qs, u"sftp"_qs, u"ftps"_qs, u"gopher"_qs, u"rtmp"_qs, u"rtsp"_qs, u"tftp"_qs})
            QCOMPARE(passes(scheme + u"://h/"_qs), "valid curl");
        for (const QString &url : {u"httpx://h"_qs, u"rtmps://h/"_qs, u"file:///etc/hosts"_qs,
                                   u"magnet:?xt=urn:btih:a"_qs, u"data:,a"_qs})
            QCOMPARE(passes(url), "valid ");
    }

    void queries()
    {
        const auto with = [](const QString &url, const QString &query,
                             QUrl::ParsingMode mode = QUrl::StrictMode) {
            return appendQuery(QUrl(url), query, mode).toString(QUrl::FullyEncoded);
        };
        QCOMPARE(with(u"http://h/p#f"_qs, u"a=1"_qs), u"http://h/p?a=1#f"_qs);
        QCOMPARE(with(u"http://h/p?"_qs, u"a=1"_qs), u"http://h/p?a=1"_qs);
        QCOMPARE(with(u"http://h/p?a=1%26b"_qs, u"c=2"_qs), u"http://h/p?a=1%26b&c=2"_qs);
        QCOMPARE(with(u"http://h/p?a=%C4%9B"_qs, u"b=ě c"_qs, QUrl::TolerantMode),
                 u"http://h/p?a=%C4%9B&b=%C4%9B%20c"_qs);
        QCOMPARE(with(u"http://h/p"_qs, u"a=%41"_qs, QUrl::DecodedMode), u"http://h/p?a=%2541"_qs);
        QCOMPARE(with(u"http://h/p?a=1"_qs, {}), u"http://h/p?a=1&"_qs);
        QCOMPARE(with(u"http://h/p"_qs, {}), u"http://h/p"_qs);
    }

    void rootHosts()
    {
        const auto isBelow = [](const QString &host, const QString &rootHost) {
            const QString longPath(1 << 20, u'p');
            return isRootHostEqualTo(QUrl(u"https://u@"_qs + host + u":8080/"_qs + longPath),
                                     rootHost);
        };
        QVERIFY(isBelow(u"EXAMPLE.org"_qs, u"example.ORG"_qs));
        QVERIFY(isBelow(u"a.b.EXAMPLE.org"_qs, u"Example.org"_qs));
        QVERIFY(!isBelow(u"badexample.org"_qs, u"example.org"_qs));
        QVERIFY(!isBelow(u"example.org.evil.com"_qs, u"example.org"_qs));
        QVERIFY(!isBelow(u"org"_qs, u"example.org"_qs));
        QVERIFY(!isBelow(u".example.org"_qs, u"example.org"_qs));
        QVERIFY(isBelow(u"räksmörgås.se"_qs, u"RÄKSMÖRGÅS.se"_qs));
        QVERIFY(isBelow(u"a.xn--rksmrgs-5wao1o.se"_qs, u"räksmörgås.se"_qs));
        QVERIFY(isBelow(u"příklad.cz"_qs, u"xn--pklad-zsa96e.cz"_qs));
        QVERIFY(!isBelow(u"example.org"_qs, {}));
        QVERIFY(isBelow(u"[::1]"_qs, u"::1"_qs));
        QVERIFY(!isBelow(u"example.org"_qs, QString(1 << 20, u'a')));
    }

    void headerFields_data()
    {
        const Rows<QByteArray, std::string, std::string, int> row("block", "name", "value",
                                                                  "count");
        row("a response", "HTTP/1.1 200 OK\r\nServer: x\r\nContent-Length: 5\r\n\r\n", "server",
            "x", 1);
        row("a request", "GET http://h:80/ HTTP/1.1\r\nHost: h:80\r\n", "HOST", "h:80", 1);
        row("no first line, line feeds alone, no last one", "A: 1\nb:2", "B", "2", 1);
        row("pseudo fields of HTTP/2 are none", ":status: 200\r\na: 1\r\n", "status", "", 0);
        row("repeated", "Accept: a\r\nX: y\r\naccept: b, c\r\nACCEPT:\r\n", "Accept", "a, b, c, ",
            3);
        row("repeated cookies", "Cookie: a=1\r\ncookie: b=2\r\n", "Cookie", "a=1; b=2", 2);
        row("blanks around the value", "A: \t b c \t\r\n", "a", "b c", 1);
        row("a folded line", "A: b\r\n \t c\r\n \r\nD: e\r\n", "a", "b c", 1);
        row("a folded line of no field", " x\r\nA: b\r\nno field\r\n c\r\n", "a", "b", 1);
        row("no names", "A B: 1\r\n: 2\r\nA : 3\r\n\xc3\xa9: 4\r\n", "A", "", 0);
        row("bytes beyond ASCII", "A: \xff\xc3\xa9\r\n", "a", "\xff\xc3\xa9", 1);
    }

    void headerFields()
    {
        QFETCH(const QByteArray, block);
        QFETCH(const std::string, name);
        QFETCH(const int, count);
        const HttpHeaderBlock headers(block.toStdString());
        QTEST(headers.value(name), "value");
        QCOMPARE(headers.values(name).size(), size_t(count));
        QCOMPARE(headers.contains(name), count > 0);
    }

    void headerValues_data()
    {
        // The first letter of what is said, which may be nothing: name of the file, media type and
        // its codecs, length, or range ("*" where it is not known).
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QString>("said");
        const auto row = [](const QByteArray &header, const QString &said) {
            QTest::newRow(header.constData()) << header << said;
        };
        const auto type = [&row](const QByteArray &value, const QString &said) {
            row("Content-Type: " + value, said.isEmpty() ? said : u"T "_qs + said);
        };
        type("Application/VND.Apple.MpegURL ; charset=UTF-8", u"application/vnd.apple.mpegurl "_qs);
        type("video/mp4; Codecs=\"avc1.4D401E, mp4a;40\"", u"video/mp4 avc1.4D401E, mp4a;40"_qs);
        type("audio/webm;codecs=opus;codecs=x", u"audio/webm opus"_qs);
        type("video/mp4;;  ;codecs = \"a\\\"b\"", u"video/mp4 a\"b"_qs);
        type("video/mp4; codecs=\"not closed", u"video/mp4 not closed"_qs);
        type("a/b\nContent-Type: text/html\nContent-Type: nonsense\nContent-Type:",
             u"text/html "_qs);
        for (const char *value : {"", "video", "/mp4", "video/", "video /mp4", "video/mp4/x"})
            type(value, {});

        row("content-length:0", u"L 0"_qs);
        row("Content-Length: 18446744073709551615", u"L 18446744073709551615"_qs);
        row("Content-Length: 5, 5\ncontent-length: 5", u"L 5"_qs);
        for (const char *value :
             {"", "18446744073709551616", "-1", "+1", "1.5", "0x10", "5\nContent-Length: 6"})
            row(QByteArray("Content-Length: ") + value, {});

        row("Content-Range: bytes 0-499/1234", u"R 0-499/1234"_qs);
        row("Content-Range: Bytes  1233-1233/1234", u"R 1233-1233/1234"_qs);
        row("Content-Range: bytes 0-499/*", u"R 0-499/*"_qs);
        row("Content-Range: bytes */1234", u"R *-*/1234"_qs);
        for (const char *value : {"bytes */*", "bytes 500-499/1234", "bytes 0-1234/1234",
                                  "bytes 0-18446744073709551616/*", "bytes 0-/1234", "bytes 0-1",
                                  "bytes=0-1/2", "items 0-1/2", "/ "})
            row(QByteArray("Content-Range: ") + value, {});

        const auto name = [&row](const QByteArray &value, const QString &said) {
            row("Content-Disposition: " + value, said.isEmpty() ? said : u"N "_qs + said);
        };
        // As the standards have it.
        name("Attachment;FileName=a.zip", u"a.zip"_qs);
        name("inline; filename=\"a;b\\\"c\\\\d e.zip\"; size=5", u"d e.zip"_qs);
        name("attachment; filename=plain.txt; filename*=UTF-8''%e2%82%ac%20rates.txt",
             u"€ rates.txt"_qs);
        name("attachment; filename*=ISO-8859-1''%A3.txt", u"£.txt"_qs);
        name("attachment", {});
        // As it comes all the same.
        name("attachment; filename=My report 2.pdf", u"My report 2.pdf"_qs);
        name("attachment; filename=\"not closed.zip", u"not closed.zip"_qs);
        name("attachment; filename = a.zip ;", u"a.zip"_qs);
        name("attachment; filename=\"\"; filename*=\"UTF-8''b.zip\"", u"b.zip"_qs);
        name("attachment; filename*=koi8-r''%C1; filename=good.zip", u"good.zip"_qs);
        name("attachment; filename*=UTF-8''%ff.zip; filename=good.zip", u"good.zip"_qs);
        name("attachment; filename*=UTF-8''100%.zip", u"100%.zip"_qs);
        name("attachment; filename=\"\xc4\x9b\xc5\x99.zip\"", u"ěř.zip"_qs);
        name("attachment; filename=\"caf\xe9.zip\"", u"café.zip"_qs);
        name("attachment; filename=\"%C4%9B%20b.zip\"", u"ě b.zip"_qs);
        name("attachment; filename=\"50%ff.zip\"", u"50%ff.zip"_qs);
        name("attachment; filename=\"=?UTF-8?B?xJvFmS56aXA=?=\"", u"ěř.zip"_qs);
        name("attachment; filename==?utf-8?q?=C4=9B_1?= =?utf-8?Q?=2ezip?=", u"ě 1.zip"_qs);
        name("attachment; filename=\"=?UTF-8?X?a?=\"", u"=?UTF-8?X?a?="_qs);
        // A server does not choose a folder.
        name("attachment; filename=\"../../etc/passwd\"", u"passwd"_qs);
        name("attachment; filename=\"C:\\Users\\me\\a.zip\"", u"a.zip"_qs);
        name("attachment; filename*=UTF-8''..%2F..%5Ca.zip", u"a.zip"_qs);
        name("attachment; filename=\"a/..\"", {});
        name("attachment; filename=\"a\001\tb\177.zip\"", u"ab.zip"_qs);
    }

    void headerValues()
    {
        QFETCH(const QByteArray, header);
        const HttpHeaderBlock headers("A: b\r\n" + header.toStdString() + "\r\n");
        const auto text = [](const std::optional<quint64> &value) {
            return value ? QString::number(*value) : u"*"_qs;
        };
        QString said;
        if (const QString name = headers.fileName(); !name.isEmpty())
            said += u"N "_qs + name;
        if (const auto type = headers.mediaType())
            said += QString::fromStdString("T " + type->name + ' ' + type->parameter("codecs"));
        if (const auto length = headers.contentLength())
            said += u"L "_qs + text(length);
        if (const auto range = headers.contentRange())
            said += u"R "_qs + text(range->first) + u'-' + text(range->last) + u'/'
                + text(range->total);
        QTEST(said, "said");
    }
};

QTEST_GUILESS_MAIN(TestDownloads)
#include "tst_downloads.moc"
