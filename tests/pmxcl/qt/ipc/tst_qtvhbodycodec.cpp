#include "processmemory.h"
#include "qtvhbodycodec.h"

#include <QBitArray>
#include <QByteArrayList>
#include <QDataStream>
#include <QDateTime>
#include <QLineF>
#include <QRectF>
#include <QTest>
#include <QTimeZone>
#include <QUrl>
#include <QUuid>

using VhMap = QHash<QString, QVariant>;
using namespace QtVhBodyCodec;

namespace {

/// One entry with an empty key; the value, as QDataStream has it, is given in hexadecimal.
QByteArray dataStreamBody(const QByteArray &valueHex)
{
    return QByteArray::fromHex("00000001 00000000" + valueHex);
}

VhMap entry(const QVariant &value) { return {{QStringLiteral("key"), value}}; }

} // namespace

class TestQtVhBodyCodec : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void goldenBytes_data();
    void goldenBytes();
    void dataStreamKeepsValues_data();
    void dataStreamKeepsValues();
    void cborKeepsJsonLikeValues();
    void refusesHostileDataStream_data();
    void refusesHostileDataStream();
    void refusesHostileCbor_data();
    void refusesHostileCbor();
    void boundsNesting_data();
    void boundsNesting();
    void refusesEveryTruncation();
    void ignoresWhatFollows();
};

void TestQtVhBodyCodec::goldenBytes_data()
{
    QTest::addColumn<VhMap>("map");
    QTest::addColumn<QByteArray>("dataStream");
    QTest::addColumn<QByteArray>("cbor");
    const auto row = [](const char *name, const VhMap &map, const char *dataStream,
                        const char *cbor) {
        QTest::newRow(name) << map << QByteArray::fromHex(dataStream) << QByteArray::fromHex(cbor);
    };
    row("empty", {}, "", "A0");
    row("text", {{QStringLiteral("name"), QStringLiteral("x")}},
        "00000001 00000008 006E0061006D0065 0000000A 00 00000002 0078", "A1 646E616D65 6178");
    row("64-bit integer", {{QStringLiteral("id"), qint64(-2)}},
        "00000001 00000004 00690064 00000004 00 FFFFFFFFFFFFFFFE", "A1 626964 21");
    row("flag", {{QStringLiteral("b"), true}}, "00000001 00000002 0062 00000001 00 01",
        "A1 6162 F5");
    row("hash in a list", {{QStringLiteral("l"), QVariantList{VhMap{{QString(), 7}}}}},
        "00000001 00000002 006C 00000009 00 00000001 0000001C 00 00000001 FFFFFFFF 00000002 00 "
        "00000007",
        "A1 616C 81 A1 60 07");
}

void TestQtVhBodyCodec::goldenBytes()
{
    QFETCH(const VhMap, map);
    QFETCH(const QByteArray, dataStream);
    QFETCH(const QByteArray, cbor);
    QCOMPARE(toDataStream(map).toHex(), dataStream.toHex());
    QCOMPARE(toCbor(map).toHex(), cbor.toHex());
    if (!map.isEmpty())
        QCOMPARE(fromDataStream(dataStream), map);
    QCOMPARE(fromCbor(cbor)->size(), map.size());
}

void TestQtVhBodyCodec::dataStreamKeepsValues_data()
{
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, const QVariant &value) { QTest::newRow(name) << value; };
    const QDate date(2024, 2, 29);
    const QTime time(23, 59, 58, 999);
    row("invalid", QVariant());
    row("null pointer", QVariant::fromValue(nullptr));
    row("bool", false);
    row("int", -1);
    row("unsigned int", 0xFFFFFFFFu);
    row("long", QVariant::fromValue(-1L));
    row("unsigned long", QVariant::fromValue(1UL));
    row("64-bit", std::numeric_limits<qint64>::min());
    row("unsigned 64-bit", std::numeric_limits<quint64>::max());
    row("short", QVariant::fromValue(short(-3)));
    row("unsigned short", QVariant::fromValue(ushort(3)));
    row("signed char", QVariant::fromValue(qint8(-3)));
    row("unsigned char", QVariant::fromValue(uchar(3)));
    row("double", 0.1);
    row("float", 0.5F);
    row("character", QChar(u'\u20AC'));
    row("text", QStringLiteral("\u20AC"));
    row("null text", QString());
    row("text, null as a variant", QVariant(QMetaType::fromType<QString>()));
    row("integer, null as a variant", QVariant(QMetaType::fromType<int>()));
    row("list, null as a variant", QVariant(QMetaType::fromType<QVariantList>()));
    row("URL, null as a variant", QVariant(QMetaType::fromType<QUrl>()));
    row("empty text", QStringLiteral(""));
    row("texts", QStringList{QStringLiteral("a"), QString()});
    row("bytes", QByteArray("\0\xFF", 2));
    row("null bytes", QByteArray());
    row("byte arrays", QVariant::fromValue(QByteArrayList{"a", ""}));
    row("no bits", QBitArray());
    row("9 bits", QBitArray(9, true));
    row("date", date);
    row("time", time);
    row("invalid date and time", QDateTime());
    row("local date and time", QDateTime(date, time));
    row("UTC", QDateTime(date, time, Qt::UTC));
    row("offset from UTC", QDateTime(date, time, Qt::OffsetFromUTC, -3600));
    row("time zone", QDateTime(date, time, QTimeZone("America/Argentina/Buenos_Aires")));
    row("own time zone",
        QDateTime(date, time,
                  QTimeZone("Own/Zone", 3600, QStringLiteral("name"), QStringLiteral("N"))));
    row("URL", QUrl(QStringLiteral("https://example.com/%20?q#f")));
    row("UUID", QUuid(QStringLiteral("{12345678-9abc-def0-1234-56789abcdef0}")));
    row("size", QSize(1, -1));
    row("rectangle", QRectF(1, 2, 3, 4));
    row("line", QLineF(1, 2, 3, 4));
    row("point", QPointF(1, 2));
    row("list", QVariantList{1, QVariantList{}, QStringLiteral("a")});
    row("map", QVariantMap{{QStringLiteral("a"), 1}, {QStringLiteral("b"), QVariantMap()}});
    row("hash", VhMap{{QStringLiteral("a"), VhMap{{QStringLiteral("b"), 2}}}});
}

void TestQtVhBodyCodec::dataStreamKeepsValues()
{
    QFETCH(const QVariant, value);
    QByteArray asQtHasIt;
    QDataStream stream(&asQtHasIt, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_12);
    stream << entry(value);
    QCOMPARE(toDataStream(entry(value)).toHex(), asQtHasIt.toHex());

    const auto decoded = fromDataStream(asQtHasIt);
    QVERIFY(decoded);
    const QVariant found = decoded->value(QStringLiteral("key"));
    QCOMPARE(found.typeId(), value.typeId());
    QCOMPARE(found, value);
    QCOMPARE(found.isNull(), value.isNull());
}

void TestQtVhBodyCodec::cborKeepsJsonLikeValues()
{
    const VhMap map = {
        {QStringLiteral("text"), QStringLiteral("\u20AC")},
        {QStringLiteral("id"), std::numeric_limits<qint64>::max()},
        {QStringLiteral("double"), 0.1},
        {QStringLiteral("bytes"), QByteArray("\xFF")},
        {QStringLiteral("url"), QUrl(QStringLiteral("https://example.com/"))},
        {QStringLiteral("time"), QDateTime(QDate(2024, 2, 29), QTime(1, 2), Qt::UTC)},
        {QStringLiteral("map"), QVariantMap{{QStringLiteral("b"), false}}},
        {QStringLiteral("list"), QVariantList{qint64(1), QStringLiteral("a")}}};
    QCOMPARE(fromCbor(toCbor(map)), map);
    // A tagged map, something else, and strings and containers of indefinite length.
    QCOMPARE(fromCbor(QByteArray::fromHex("D9D9F7 A1 6162 F5")),
             (VhMap{{QStringLiteral("b"), true}}));
    QCOMPARE(fromCbor(QByteArray::fromHex("83 01 02 03")), VhMap());
    QCOMPARE(fromCbor(QByteArray::fromHex("BF 7F 6161 6162 FF 9F F6 FF FF"))
                 ->value(QStringLiteral("ab")),
             QVariant(QVariantList{QVariant::fromValue(nullptr)}));
}

void TestQtVhBodyCodec::refusesHostileDataStream_data()
{
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const char *valueHex) {
        QTest::newRow(name) << dataStreamBody(valueHex);
    };
    QTest::newRow("half a count") << QByteArray::fromHex("0000");
    QTest::newRow("hash count that lies") << QByteArray::fromHex("FFFFFFFF 00000000 0000000001");
    QTest::newRow("key length that lies") << QByteArray::fromHex("00000001 7FFFFFFE 0061");
    QTest::newRow("key of half a character")
        << QByteArray::fromHex("00000001 00000001 61 00000001 00 01");
    row("list count that lies", "00000009 00 FFFFFFFF 0000000000");
    row("list count a little too big", "00000009 00 00000002 00000001 00 01 00000000");
    row("map count that lies", "00000008 00 80000000 00000000 0000000001");
    row("text length that lies", "0000000A 00 FFFFFFFE 0061");
    row("texts count that lies", "0000000B 00 FFFFFFFF FFFFFFFF");
    row("bytes length that lies", "0000000C 00 7FFFFFFF 61");
    row("byte arrays count that lies", "00000031 00 10000000 00000000");
    row("bits that lie", "0000000D 00 FFFFFFFF 61");
    row("bits beyond the last one", "0000000D 00 00000001 03");
    row("value cut off", "00000004 00 00000000 000000");
    row("type 0xFFFFFFFF", "FFFFFFFF 00 00000000");
    row("font", "00000040 00 00000000 00000000");
    row("regular expression", "0000002C 00 00000000 00000000");
    row("JSON document", "00000030 00 00000002 7B7D");
    row("variant in a variant", "00000029 00 00000001 00 01");
    row("user type", "00000400 00 00000009 512E506F696E7400 00 00000000");
    row("user type, known to Qt", "00000400 00 00000005 514A736F 00");
    row("type that Qt 6 names", "00010000 00 00000005 514A736F 00");
    row("date and time of no kind", "00000010 00 0000000000258F6B 00000000 04");
    row("time zone that leads elsewhere",
        "00000010 00 0000000000258F6B 00000000 03 0000000A 002E002E002F002E002E");
    // Each is looked for in several folders.
    QByteArray zones = "00000009 00 000003E9";
    for (int i = 0; i < 1001; ++i)
        zones += "00000010 00 0000000000258F6B 00000000 03 00000002"
            + QByteArray::number(0x1000 + i, 16);
    row("too many time zones", zones.constData());
}

void TestQtVhBodyCodec::refusesHostileDataStream()
{
    QFETCH(const QByteArray, body);
    const qint64 before = reservedMemory();
    QVERIFY(!fromDataStream(body));
    QVERIFY(reservedMemory() - before < 64'000'000);
}

void TestQtVhBodyCodec::refusesHostileCbor_data()
{
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const char *hex) {
        QTest::newRow(name) << QByteArray::fromHex(hex);
    };
    row("map count that lies", "BB FFFFFFFFFFFFFFFF 01 01");
    row("map count that overflows", "BB 8000000000000000 01 01");
    row("array count that lies", "A1 01 9A 40000000 01");
    row("counts that lie together", "83 83 83 01 02");
    row("text length that lies", "A1 01 7B 7FFFFFFFFFFFFFFF 61");
    row("chunk length that lies", "A1 01 5F 5A 7FFFFFFF 61");
    row("chunk in a chunk", "A1 01 5F 5F 4161 FF FF");
    row("chunk of another type", "A1 01 5F 6161 FF");
    row("break for a value", "BF 01 FF");
    row("break in an array of known length", "A1 01 82 01 FF");
    row("tag of nothing", "A1 01 C1");
    row("reserved information", "A1 01 1C");
    row("text that is not UTF-8", "A1 01 61FF");
}

void TestQtVhBodyCodec::refusesHostileCbor()
{
    QFETCH(const QByteArray, body);
    const qint64 before = reservedMemory();
    QVERIFY(!fromCbor(body));
    QVERIFY(reservedMemory() - before < 64'000'000);
}

void TestQtVhBodyCodec::boundsNesting_data()
{
    QTest::addColumn<bool>("isCbor");
    QTest::addColumn<QByteArray>("level");
    QTest::addColumn<QByteArray>("innermost");
    const auto row = [](const char *name, bool isCbor, const char *level, const char *innermost) {
        QTest::newRow(name) << isCbor << QByteArray::fromHex(level)
                            << QByteArray::fromHex(innermost);
    };
    // The null flag of the value comes first, each level ends with the type of what it holds.
    row("lists", false, "00 00000001 00000009", "00 00000000");
    row("maps", false, "00 00000001 00000000 00000008", "00 00000000");
    row("hashes", false, "00 00000001 00000000 0000001C", "00 00000000");
    row("CBOR arrays", true, "81", "80");
    row("CBOR arrays of indefinite length", true, "9F", "FF");
    row("CBOR maps", true, "A1 01", "A0");
    row("CBOR tags", true, "C1", "01");
}

void TestQtVhBodyCodec::boundsNesting()
{
    QFETCH(const bool, isCbor);
    QFETCH(const QByteArray, level);
    QFETCH(const QByteArray, innermost);
    const auto decoded = [&](int levels) {
        if (isCbor) {
            QByteArray body = "\xA1\x01" + level.repeated(levels) + innermost;
            if (level == "\x9F")
                body += QByteArray(levels, '\xFF');
            return fromCbor(body);
        }
        const QByteArray type = level.last(4);
        return fromDataStream(dataStreamBody("") + type + level.repeated(levels) + innermost);
    };
    QVERIFY(decoded(90));
    QVERIFY(!decoded(100));
    QVERIFY(!decoded(100'000));
    QVERIFY(!decoded(5'000'000));
}

void TestQtVhBodyCodec::refusesEveryTruncation()
{
    const VhMap map = {{QStringLiteral("text"), QStringLiteral("value")},
                       {QStringLiteral("list"), QVariantList{1, 2.0, QByteArray("bytes")}},
                       {QStringLiteral("time"), QDateTime(QDate(2024, 2, 29), QTime(1, 2))},
                       {QStringLiteral("bits"), QBitArray(20, true)},
                       {QStringLiteral("hash"), VhMap{{QStringLiteral("a"), true}}}};
    const QByteArray dataStream = toDataStream(map);
    QCOMPARE(fromDataStream(dataStream), map);
    for (qsizetype size = 0; size < dataStream.size(); ++size)
        QVERIFY2(!fromDataStream(dataStream.first(size)), qPrintable(QString::number(size)));
    const QByteArray cbor = toCbor(map);
    QVERIFY(fromCbor(cbor));
    for (qsizetype size = 0; size < cbor.size(); ++size)
        QVERIFY2(!fromCbor(cbor.first(size)), qPrintable(QString::number(size)));
}

void TestQtVhBodyCodec::ignoresWhatFollows()
{
    const VhMap map = entry(1);
    QCOMPARE(fromDataStream(toDataStream(map) + "rest"), map);
    QCOMPARE(fromCbor(toCbor(map) + "rest")->size(), 1);
}

QTEST_GUILESS_MAIN(TestQtVhBodyCodec)
#include "tst_qtvhbodycodec.moc"
