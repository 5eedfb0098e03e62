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

    void fileTypes_data()
    {
        const Rows<QString, AbstractFileType> row("names", "type");
        row("videos", u"a.avi|b.MP4|c.tar.mkv|.vob|m.rmvb|x.f4a|y.mpg2|z.m2ts"_qs,
            AbstractFileType::Video);
        row("in videos and music", u"a.webm|a.ogg|a.3gp|a.rm|a.m4p"_qs, AbstractFileType::Video);
        row("music", u"a.mp3|a.iklax|a.ivs|a.Flac|a.m4b|a.raw|a.wma|a.mid"_qs,
            AbstractFileType::Music);
        row("documents", u"a.doc|a.accdb|Pdf|a.txt|a.sxm|a.xlsb|a.csv|a.epub"_qs,
            AbstractFileType::Document);
        row("images", u"a.tif|a.JPEG|a.j2k|a.ico|a.png|a.webp|a.svg"_qs, AbstractFileType::Image);
        // The Kelvin sign is a "k" in lower case only where more than ASCII is folded.
        row("unknown", u"|.|a.|mp4.|a.zip|readme|a.pdf |a.mp4/b|a.mp5|a.mp4?x=1|a.m\u212Av"_qs,
            AbstractFileType::Unknown);
    }

    void fileTypes()
    {
        QFETCH(const QString, names);
        QFETCH(const AbstractFileType, type);
        const QStringList all = names.split(u'|');
        for (const QString &name : all)
            QVERIFY2(AbstractFileTypeDetector().typeFromFileName(name) == type, qPrintable(name));
    }

    void cookies_data()
    {
        const Rows<QString, QChar, QByteArray> row("text", "separator", "cookies");
        row("separators alone", u";;; ;"_qs, u';', "");
        row("without equals", u"a=1;b; c=3;d"_qs, u';', "a is 1, c is 3");
        row("equals in the value", u"a==b=c="_qs, u';', "a is =b=c=");
        row("no name, no value", u"=v; n=; ="_qs, u';', " is v, n is ,  is ");
        row("blanks outside are dropped, inside kept", u"\t a = 1 \n; b=2"_qs, u';',
            "a  is  1, b is 2");
        row("quotes and commas mean nothing", u"a=\"1;b=2\",x"_qs, u';', "a is \"1, b is 2\",x");
        row("beyond ASCII", u"ě=ř😀"_qs, u';', "ě is ř😀");
        row("a letter as separator, of that case only", u"n=1xm=2Xy"_qs, u'x', "n is 1, m is 2Xy");
    }

    void cookies()
    {
        QFETCH(const QString, text);
        QFETCH(const QChar, separator);
        QByteArrayList found;
        const QList<QNetworkCookie> parsed = cookiesFromString(text, separator);
        for (const QNetworkCookie &cookie : parsed)
            found += cookie.name() + " is " + cookie.value();
        QTEST(found.join(", "), "cookies");

        QNetworkCookie withMore("\xc4\x9b", "\uFEFF3");
        withMore.setPath(u"/p"_qs);
        withMore.setSecure(true);
        const QNetworkCookie one("a", "1");
        QCOMPARE(cookiesToString({withMore, one, one, QNetworkCookie("", "")}, u';'),
                 u"ě=\uFEFF3;a=1;a=1;="_qs);
    }

    void schemes_data()
    {
        /// One letter per check that they pass: valid, http, httpS, qt and www, curl.
        const Rows<QString, QByteArray> row("urls", "passes");
        row("nothing", u"|example.org/a|//example.org/a|http://example.org:99999/"_qs, "");
        row("http", u"http://|http://h/%zz a|http://example.org|HTTP://EXAMPLE.ORG"_qs, "vhqc");
        row("https", u"https://příklad.example/"_qs, "vhsqc");
        row("curl", u"FTP://h/|sftp://h/|ftps://h/|gopher://h/|rtmp://h/|rtsp://h/|tftp://h/"_qs,
            "vc");
        row("others", u"httpx://h|rtmps://h/|file:///etc/hosts|magnet:?xt=urn:btih:a|data:,a"_qs,
            "v");
    }

    void schemes()
    {
        QFETCH(const QString, urls);
        const QStringList all = urls.split(u'|');
        for (const QString &text : all) {
            const QUrl url(text);
            QByteArray passed;
            passed += isValid(url) ? "v" : "";
            passed += isValidHttpUrl(url) ? "h" : "";
            passed += isValidHttpsUrl(url) ? "s" : "";
            passed += isDownloadableByQt(url) && isDownloadableByWww(url) ? "q" : "";
            passed += isDownloadableByCurl(url) ? "c" : "";
            QTEST(passed, "passes");
        }
    }

    void queries_data()
    {
        const Rows<QString, QString, QUrl::ParsingMode, QString> row("url", "query", "mode",
                                                                     "result");
        const QUrl::ParsingMode strict = QUrl::StrictMode;
        row("no query", u"http://h/p#f"_qs, u"a=1"_qs, strict, u"http://h/p?a=1#f"_qs);
        row("empty query", u"http://h/p?"_qs, u"a=1"_qs, strict, u"http://h/p?a=1"_qs);
        row("behind a query", u"http://h/p?a=1%26b"_qs, u"c=2"_qs, strict,
            u"http://h/p?a=1%26b&c=2"_qs);
        row("encoded once", u"http://h/p?a=%C4%9B"_qs, u"b=ě c"_qs, QUrl::TolerantMode,
            u"http://h/p?a=%C4%9B&b=%C4%9B%20c"_qs);
        row("percent signs taken as such", u"http://h/p"_qs, u"a=%41"_qs, QUrl::DecodedMode,
            u"http://h/p?a=%2541"_qs);
        row("nothing added", u"http://h/p?a=1"_qs, QString(), strict, u"http://h/p?a=1&"_qs);
        row("nothing at all", u"http://h/p"_qs, QString(), strict, u"http://h/p"_qs);
    }

    void queries()
    {
        QFETCH(const QString, url);
        QFETCH(const QString, query);
        QFETCH(const QUrl::ParsingMode, mode);
        QTEST(appendQuery(QUrl(url), query, mode).toString(QUrl::FullyEncoded), "result");
    }

    void rootHosts_data()
    {
        const Rows<QString, QString, bool> row("host", "rootHost", "equal");
        row("the same", u"EXAMPLE.org"_qs, u"example.ORG"_qs, true);
        row("below", u"a.b.EXAMPLE.org"_qs, u"Example.org"_qs, true);
        row("other name", u"badexample.org"_qs, u"example.org"_qs, false);
        row("in front", u"example.org.evil.com"_qs, u"example.org"_qs, false);
        row("above", u"org"_qs, u"example.org"_qs, false);
        row("nothing before the dot", u".example.org"_qs, u"example.org"_qs, false);
        row("international", u"räksmörgås.se"_qs, u"RÄKSMÖRGÅS.se"_qs, true);
        row("encoded", u"a.xn--rksmrgs-5wao1o.se"_qs, u"räksmörgås.se"_qs, true);
        row("not decoded", u"příklad.cz"_qs, u"xn--pklad-zsa96e.cz"_qs, true);
        row("none", u"example.org"_qs, QString(), false);
        row("address", u"[::1]"_qs, u"::1"_qs, true);
        row("longer than any host", u"example.org"_qs, QString(1 << 20, u'a'), false);
    }

    void rootHosts()
    {
        QFETCH(const QString, host);
        QFETCH(const QString, rootHost);
        const QString longPath(1 << 20, u'p');
        const QUrl url(u"https://u@"_qs + host + u":8080/"_qs + longPath);
        QTEST(isRootHostEqualTo(url, rootHost), "equal");
    }

    void headerFields_data()
    {
        const Rows<QByteArray, std::string, std::string, int> row("block", "name", "value",
                                                                  "count");
        row("empty", "", "a", "", 0);
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

    void mediaTypes_data()
    {
        const Rows<QByteArray, std::string> row("types", "expected"); // separated by "|"
        row("any case", "Application/VND.Apple.MpegURL ; charset=UTF-8",
            "application/vnd.apple.mpegurl");
        row("quoted", "video/mp4; Codecs=\"avc1.4D401E, mp4a;40\"",
            "video/mp4 avc1.4D401E, mp4a;40");
        row("twice", "audio/webm;codecs=opus;codecs=x", "audio/webm opus");
        row("escaped", "video/mp4;;  ;codecs = \"a\\\"b\"", "video/mp4 a\"b");
        row("not closed", "video/mp4; codecs=\"not closed", "video/mp4 not closed");
        row("the last counts", "video/mp4|text/html|nonsense|", "text/html");
        row("none of these", "|video|/mp4|video/|video /mp4|video/mp4/x", "");
    }

    void mediaTypes()
    {
        QFETCH(QByteArray, types);
        const HttpHeaderBlock headers(
            ("Content-Type: " + types.replace('|', "\r\nContent-Type: ")).toStdString());
        const HttpMediaType type = headers.mediaType().value_or(HttpMediaType());
        const std::string codecs = type.parameter("codecs");
        QTEST(type.name + (codecs.empty() ? codecs : ' ' + codecs), "expected");
    }

    void lengthsAndRanges_data()
    {
        /// Header fields separated by "|", and what they say: the length, or "first-last/total",
        /// each
        /// "*" if it is not known.
        const Rows<QByteArray, QString> row("fields", "expected");
        const auto lengths = [&row](const char *value, const char *expected) {
            row(value, QByteArray("Content-Length:") + value, QString::fromLatin1(expected));
        };
        lengths("0", "0");
        lengths("18446744073709551615", "18446744073709551615");
        lengths("5, 5|content-length: 5", "5");
        for (const char *value :
             {"", "18446744073709551616", "-1", "+1", "1.5", "0x10", "5|Content-Length: 6"})
            lengths(value, "");
        const auto ranges = [&row](const char *value, const char *expected) {
            row(value, QByteArray("Content-Range: ") + value, QString::fromLatin1(expected));
        };
        ranges("bytes 0-499/1234", "0-499/1234");
        ranges("Bytes  1233-1233/1234", "1233-1233/1234");
        ranges("bytes 0-499/*", "0-499/*");
        ranges("bytes */1234", "*-*/1234");
        for (const char *value : {"bytes */*", "bytes 500-499/1234", "bytes 0-1234/1234",
                                  "bytes 0-1", "bytes 0-18446744073709551616/*", "bytes 0-/1234",
                                  "bytes=0-1/2", "items 0-1/2", "/ "})
            ranges(value, "");
    }

    void lengthsAndRanges()
    {
        QFETCH(QByteArray, fields);
        const HttpHeaderBlock headers(fields.replace('|', '\n').toStdString());
        const auto text = [](const std::optional<quint64> &value) {
            return value ? QString::number(*value) : u"*"_qs;
        };
        QString found;
        if (const auto length = headers.contentLength())
            found = text(length);
        if (const auto range = headers.contentRange())
            found += text(range->first) + u'-' + text(range->last) + u'/' + text(range->total);
        QTEST(found, "expected");
    }

    void fileNames_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QString>("name");
        const auto row = [](const QByteArray &value, const QString &name) {
            QTest::newRow(value.constData()) << value << name;
        };
        // As the standards have it.
        row("Attachment;FileName=a.zip", u"a.zip"_qs);
        row("inline; filename=\"a;b\\\"c\\\\d e.zip\"; size=5", u"d e.zip"_qs);
        row("attachment; filename=plain.txt; filename*=UTF-8''%e2%82%ac%20rates.txt",
            u"€ rates.txt"_qs);
        row("attachment; filename*=ISO-8859-1''%A3.txt", u"£.txt"_qs);
        row("attachment", {});
        // As it comes all the same.
        row("attachment; filename=My report 2.pdf", u"My report 2.pdf"_qs);
        row("attachment; filename=\"not closed.zip", u"not closed.zip"_qs);
        row("attachment; filename = a.zip ;", u"a.zip"_qs);
        row("attachment; filename=\"\"; filename*=\"UTF-8''b.zip\"", u"b.zip"_qs);
        row("attachment; filename*=koi8-r''%C1; filename=good.zip", u"good.zip"_qs);
        row("attachment; filename*=UTF-8''%ff.zip; filename=good.zip", u"good.zip"_qs);
        row("attachment; filename*=UTF-8''100%.zip", u"100%.zip"_qs);
        row("attachment; filename=\"\xc4\x9b\xc5\x99.zip\"", u"ěř.zip"_qs);
        row("attachment; filename=\"caf\xe9.zip\"", u"café.zip"_qs);
        row("attachment; filename=\"%C4%9B%20b.zip\"", u"ě b.zip"_qs);
        row("attachment; filename=\"50%ff.zip\"", u"50%ff.zip"_qs);
        row("attachment; filename=\"=?UTF-8?B?xJvFmS56aXA=?=\"", u"ěř.zip"_qs);
        row("attachment; filename==?utf-8?q?=C4=9B_1?= =?utf-8?Q?=2ezip?=", u"ě 1.zip"_qs);
        row("attachment; filename=\"=?UTF-8?X?a?=\"", u"=?UTF-8?X?a?="_qs);
        // A server does not choose a folder.
        row("attachment; filename=\"../../etc/passwd\"", u"passwd"_qs);
        row("attachment; filename=\"C:\\Users\\me\\a.zip\"", u"a.zip"_qs);
        row("attachment; filename*=UTF-8''..%2F..%5Ca.zip", u"a.zip"_qs);
        row("attachment; filename=\"a/..\"", {});
        row("attachment; filename=\"a\001\tb\177.zip\"", u"ab.zip"_qs);
    }

    void fileNames()
    {
        QFETCH(const QByteArray, value);
        const HttpHeaderBlock headers("A: b\r\nContent-Disposition: " + value.toStdString()
                                      + "\r\n");
        QTEST(headers.fileName(), "name");
    }
};

QTEST_GUILESS_MAIN(TestDownloads)
#include "tst_downloads.moc"
