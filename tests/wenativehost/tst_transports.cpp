#include "base64transport.h"
#include "percenttransport.h"

#include <QTest>

class TestTransports : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void base64Decode_data();
    void base64Decode();
    void base64RoundTrip();
    void percentDecode_data();
    void percentDecode();
    void percentEncode_data();
    void percentEncode();
    void percentRoundTrip();
};

namespace {

/// Every byte, so often that a block boundary falls on each.
QByteArray allBytes(int length)
{
    QByteArray bytes;
    for (int i = 0; i < length; ++i)
        bytes.append(static_cast<char>(i * 7 + length));
    return bytes;
}

} // namespace

void TestTransports::base64Decode_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("whole groups") << QByteArray("YWJj") << QByteArray("abc");
    QTest::newRow("one byte left") << QByteArray("YQ==") << QByteArray("a");
    QTest::newRow("two bytes left") << QByteArray("YWI=") << QByteArray("ab");
    QTest::newRow("last letters of the alphabet")
        << QByteArray("+/+/") << QByteArray("\xfb\xff\xbf");
    QTest::newRow("line break at the end")
        << QByteArray("eyJhIjoxfQ==\r\n") << QByteArray("{\"a\":1}");
    QTest::newRow("blank between groups ends it") << QByteArray("YWJj YWJj") << QByteArray("abc");
    QTest::newRow("padding ends it") << QByteArray("YQ==YWJj") << QByteArray("a");
    QTest::newRow("short padding ends it") << QByteArray("YWI=YWJj") << QByteArray("ab");
    QTest::newRow("zero byte between groups ends it")
        << QByteArray("YWJj\0YWJj", 9) << QByteArray("abc");
    QTest::newRow("padding where a group begins") << QByteArray("YWJj====") << QByteArray("abc");
    QTest::newRow("bits beyond the byte are dropped") << QByteArray("YR==") << QByteArray("a");
    QTest::newRow("zero byte inside a group") << QByteArray("YWJjYW\0j", 8) << QByteArray();
    QTest::newRow("wrong second") << QByteArray("e*Jh") << QByteArray();
    QTest::newRow("wrong third") << QByteArray("ey*J") << QByteArray();
    QTest::newRow("wrong fourth") << QByteArray("YWJjeyJ*") << QByteArray();
    QTest::newRow("padding in the second") << QByteArray("Y===") << QByteArray();
    QTest::newRow("half the padding") << QByteArray("YQ=x") << QByteArray();
    QTest::newRow("cut after one") << QByteArray("YWJjY") << QByteArray();
    QTest::newRow("cut after two") << QByteArray("YWJjYQ") << QByteArray();
    QTest::newRow("cut after three") << QByteArray("YWJjYWI") << QByteArray();
    QTest::newRow("cut in the padding") << QByteArray("YWJjYQ=") << QByteArray();
    QTest::newRow("alphabet for URLs") << QByteArray("YW-_") << QByteArray();
    QTest::newRow("byte above ASCII") << QByteArray("YW\xc3\xa9") << QByteArray();
}

void TestTransports::base64Decode()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QByteArray, bytes);
    QCOMPARE(Base64Transport::decode(text), bytes);
}

void TestTransports::base64RoundTrip()
{
    QCOMPARE(Base64Transport::encode("{\"a\":1}"), QByteArray("eyJhIjoxfQ=="));
    QCOMPARE(Base64Transport::encode("\xfb\xff\xbf"), QByteArray("+/+/"));
    for (int length = 0; length < 600; ++length) {
        const QByteArray bytes = allBytes(length);
        QCOMPARE(Base64Transport::decode(Base64Transport::encode(bytes)), bytes);
    }
}

void TestTransports::percentDecode_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("nothing encoded") << QByteArray("a+b") << QByteArray("a+b");
    QTest::newRow("both cases") << QByteArray("%7B%c3%A9%7d.") << QByteArray("{\xc3\xa9}.");
    QTest::newRow("at the very end") << QByteArray("a%41") << QByteArray("aA");
    QTest::newRow("cut short") << QByteArray("%41%4") << QByteArray("A%4");
    QTest::newRow("lone sign") << QByteArray("abc%") << QByteArray("abc%");
    QTest::newRow("no digits") << QByteArray("%zz%41") << QByteArray("%zzA");
    QTest::newRow("second digit wrong") << QByteArray("%4g%41") << QByteArray("%4gA");
    QTest::newRow("letter after F") << QByteArray("%G1%1G%@1") << QByteArray("%G1%1G%@1");
    QTest::newRow("sign before a code") << QByteArray("%%41") << QByteArray("%A");
    QTest::newRow("not decoded twice") << QByteArray("%2541") << QByteArray("%41");
    QTest::newRow("zero byte") << QByteArray("%00%41") << QByteArray("\0A", 2);
}

void TestTransports::percentDecode()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QByteArray, bytes);
    QCOMPARE(PercentTransport::decode(text), bytes);
}

void TestTransports::percentEncode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("mixed") << QByteArray("a b/\xc3\xa9") << QByteArray("a%20b%2F%C3%A9");
    QTest::newRow("kept") << QByteArray("azAZ09") << QByteArray("azAZ09");
    QTest::newRow("beside what is kept")
        << QByteArray("/:@[`{") << QByteArray("%2F%3A%40%5B%60%7B");
    QTest::newRow("marks that URLs keep") << QByteArray("-_.~%") << QByteArray("%2D%5F%2E%7E%25");
    QTest::newRow("extremes") << QByteArray("\0\xff", 2) << QByteArray("%00%FF");
}

void TestTransports::percentEncode()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, text);
    QCOMPARE(PercentTransport::encode(bytes), text);
}

void TestTransports::percentRoundTrip()
{
    const QByteArray bytes = allBytes(600);
    QCOMPARE(PercentTransport::decode(PercentTransport::encode(bytes)), bytes);
}

QTEST_GUILESS_MAIN(TestTransports)
#include "tst_transports.moc"
