#include "httpheaderblock.h"

#include <QTest>

#include <string>

namespace {

HttpHeaderBlock blockOf(const QByteArray &bytes) { return HttpHeaderBlock(bytes.toStdString()); }

/// "first-last/total", each "*" if not known.
QString toText(const std::optional<HttpContentRange> &range)
{
    const auto number = [](const std::optional<quint64> &value) {
        return value ? QString::number(*value) : u"*"_qs;
    };
    return range ? number(range->first) + u'-' + number(range->last) + u'/' + number(range->total)
                 : QString();
}

} // namespace

class TestHttpHeaderBlock : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fields_data();
    void fields();
    void mediaTypes_data();
    void mediaTypes();
    void lengths_data();
    void lengths();
    void ranges_data();
    void ranges();
    void fileNames_data();
    void fileNames();
    void largeBlocks();
};

void TestHttpHeaderBlock::fields_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("count");
    const auto row = [](const char *title, const QByteArray &block, const char *name,
                        const char *value, int count) {
        QTest::newRow(title) << block << QByteArray(name) << QByteArray(value) << count;
    };
    row("empty", "", "a", "", 0);
    row("a response", "HTTP/1.1 200 OK\r\nServer: x\r\nContent-Length: 5\r\n\r\n", "server", "x",
        1);
    row("a request", "GET http://h:80/ HTTP/1.1\r\nHost: h:80\r\n", "HOST", "h:80", 1);
    row("no first line, line feeds alone, no last one", "A: 1\nb:2", "B", "2", 1);
    row("pseudo fields of HTTP/2 are none", ":status: 200\r\na: 1\r\n", "status", "", 0);
    row("repeated", "Accept: a\r\nX: y\r\naccept: b, c\r\nACCEPT:\r\n", "Accept", "a, b, c, ", 3);
    row("repeated cookies", "Cookie: a=1\r\ncookie: b=2\r\n", "Cookie", "a=1; b=2", 2);
    row("an empty value", "A:\r\n", "a", "", 1);
    row("blanks around the value", "A: \t b c \t\r\n", "a", "b c", 1);
    row("a folded line", "A: b\r\n \t c\r\n \r\nD: e\r\n", "a", "b c", 1);
    row("a folded line of no field", " x\r\nA: b\r\n", "a", "b", 1);
    row("a folded line behind what is no field", "A: b\r\nno field\r\n c\r\n", "a", "b", 1);
    row("no names", "A B: 1\r\n: 2\r\nA : 3\r\n\xc3\xa9: 4\r\n", "A", "", 0);
    row("bytes beyond ASCII and a zero", QByteArray("A: \xff\0\xc3\xa9\r\n", 9), "a", "\xff", 1);
}

void TestHttpHeaderBlock::fields()
{
    QFETCH(const QByteArray, block);
    QFETCH(const QByteArray, name);
    QFETCH(const int, count);
    const HttpHeaderBlock headers = blockOf(block);
    const std::string value = headers.value(name.toStdString());
    QTEST(QByteArray(value.c_str()), "value"); // up to a zero byte
    QCOMPARE(headers.values(name.toStdString()).size(), size_t(count));
    QCOMPARE(headers.contains(name.toStdString()), count > 0);
}

void TestHttpHeaderBlock::mediaTypes_data()
{
    QTest::addColumn<QByteArray>("contentTypes"); // separated by "|"
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("codecs");
    const auto row = [](const char *types, const QString &name, const QString &codecs = {}) {
        QTest::newRow(types) << QByteArray(types) << name << codecs;
    };
    row("video/mp4", u"video/mp4"_qs);
    row("Application/VND.Apple.MpegURL ; charset=UTF-8", u"application/vnd.apple.mpegurl"_qs);
    row("video/mp4; Codecs=\"avc1.4D401E, mp4a;40\"", u"video/mp4"_qs, u"avc1.4D401E, mp4a;40"_qs);
    row("audio/webm;codecs=opus;codecs=x", u"audio/webm"_qs, u"opus"_qs);
    row("video/mp4;;  ;codecs = \"a\\\"b\"", u"video/mp4"_qs, u"a\"b"_qs);
    row("video/mp4; codecs=\"not closed", u"video/mp4"_qs, u"not closed"_qs);
    row("video/mp4|text/html", u"text/html"_qs);
    row("video/mp4|nonsense|", u"video/mp4"_qs);
    row("", {});
    row("video", {});
    row("/mp4", {});
    row("video/", {});
    row("video /mp4", {});
    row("video/mp4/x", {});
}

void TestHttpHeaderBlock::mediaTypes()
{
    QFETCH(const QByteArray, contentTypes);
    QByteArray lines;
    const QByteArrayList types = contentTypes.split('|');
    for (const QByteArray &type : types)
        lines += "Content-Type: " + type + "\r\n";
    const HttpMediaType type = blockOf(lines).mediaType().value_or(HttpMediaType());
    QTEST(QString::fromStdString(type.name), "name");
    QTEST(QString::fromStdString(type.parameter("codecs")), "codecs");
}

void TestHttpHeaderBlock::lengths_data()
{
    QTest::addColumn<QByteArray>("lines"); // separated by "|"
    QTest::addColumn<QString>("length");
    const auto row = [](const char *block, const char *length) {
        QTest::newRow(block) << QByteArray(block) << QString::fromLatin1(length);
    };
    row("", "");
    row("content-length:0", "0");
    row("Content-Length: 18446744073709551615", "18446744073709551615");
    row("Content-Length: 18446744073709551616", "");
    row("Content-Length: -1", "");
    row("Content-Length: +1", "");
    row("Content-Length: 1.5", "");
    row("Content-Length: 0x10", "");
    row("Content-Length: 5, 5|content-length: 5", "5");
    row("Content-Length: 5|Content-Length: 6", "");
    row("Content-Length:", "");
}

void TestHttpHeaderBlock::lengths()
{
    QFETCH(QByteArray, lines);
    const auto length = blockOf(lines.replace('|', '\n')).contentLength();
    QTEST(length ? QString::number(*length) : QString(), "length");
}

void TestHttpHeaderBlock::ranges_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("range");
    const auto row = [](const char *value, const char *range) {
        QTest::newRow(value) << QByteArray(value) << QString::fromLatin1(range);
    };
    row("bytes 0-499/1234", "0-499/1234");
    row("Bytes  1233-1233/1234", "1233-1233/1234");
    row("bytes 0-499/*", "0-499/*");
    row("bytes */1234", "*-*/1234");
    row("bytes */*", "");
    row("bytes 500-499/1234", "");
    row("bytes 0-1234/1234", "");
    row("bytes 0-18446744073709551616/*", "");
    row("bytes 0-/1234", "");
    row("bytes 0-1", "");
    row("bytes=0-1/2", "");
    row("items 0-1/2", "");
    row("/ ", "");
    row("", "");
}

void TestHttpHeaderBlock::ranges()
{
    QFETCH(const QByteArray, value);
    QTEST(toText(blockOf("Content-Range: " + value).contentRange()), "range");
}

void TestHttpHeaderBlock::fileNames_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("name");
    const auto row = [](const QByteArray &value, const QString &name) {
        QTest::newRow(value.constData()) << value << name;
    };
    // As the standards have it.
    row("attachment; filename=\"a b.zip\"", u"a b.zip"_qs);
    row("Attachment;FileName=a.zip", u"a.zip"_qs);
    row("inline; filename=\"a;b\\\"c\\\\d.zip\"; size=5", u"d.zip"_qs);
    row("attachment; filename=\"x;filename=y\"", u"x;filename=y"_qs);
    row("attachment; filename=plain.txt; filename*=UTF-8''%e2%82%ac%20rates.txt",
        u"€ rates.txt"_qs);
    row("attachment; filename*=utf-8'en'na%C3%AFve.txt; filename=\"no\"", u"naïve.txt"_qs);
    row("attachment; filename*=ISO-8859-1''%A3.txt", u"£.txt"_qs);
    row("attachment", {});
    row("", {});
    // As it comes all the same.
    row("filename=a.zip", u"a.zip"_qs);
    row("attachment; filename=My report 2.pdf", u"My report 2.pdf"_qs);
    row("attachment; filename=\"not closed.zip", u"not closed.zip"_qs);
    row("attachment; filename = a.zip ;", u"a.zip"_qs);
    row("attachment; filename=\"\"; filename*=\"UTF-8''b.zip\"", u"b.zip"_qs);
    row("attachment; filename*=bad; filename=good.zip", u"good.zip"_qs);
    row("attachment; filename*=koi8-r''%C1; filename=good.zip", u"good.zip"_qs);
    row("attachment; filename*=UTF-8''%ff.zip; filename=good.zip", u"good.zip"_qs);
    row("attachment; filename*=UTF-8''100%.zip", u"100%.zip"_qs);
    row("attachment; filename=\"\xc4\x9b\xc5\x99.zip\"", u"ěř.zip"_qs);
    row("attachment; filename=\"caf\xe9.zip\"", u"café.zip"_qs);
    row("attachment; filename=\"%C4%9B%20b.zip\"", u"ě b.zip"_qs);
    row("attachment; filename=\"100% of it.zip\"", u"100% of it.zip"_qs);
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

void TestHttpHeaderBlock::fileNames()
{
    QFETCH(const QByteArray, value);
    QTEST(blockOf("A: b\r\nContent-Disposition: " + value + "\r\n").fileName(), "name");
}

void TestHttpHeaderBlock::largeBlocks()
{
    constexpr int count = 100'000;
    std::string fields;
    std::string folded = "A: 1\r\n";
    std::string parameters = "Content-Disposition: attachment";
    for (int i = 0; i < count; ++i) {
        fields += "A: 1\r\n";
        folded += " 2\r\n";
        parameters += "; a=\"1\"";
    }
    QCOMPARE(HttpHeaderBlock(fields).value("a").size(), size_t(count * 3 - 2));
    QCOMPARE(HttpHeaderBlock(folded).value("a").size(), size_t(count * 2 + 1));
    QCOMPARE(HttpHeaderBlock(parameters + "; filename=b").fileName(), u"b"_qs);
}

QTEST_GUILESS_MAIN(TestHttpHeaderBlock)
#include "tst_httpheaderblock.moc"
