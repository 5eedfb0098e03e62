#include "processmemory.h"
#include "qtvhbodycodec.h"
#include "rows.h"

#include <QBitArray>
#include <QByteArrayList>
#include <QDataStream>
#include <QLineF>
#include <QRectF>
#include <QTimeZone>
#include <QUuid>

using VhMap = QHash<QString, QVariant>;
using namespace QtVhBodyCodec;

namespace {

QByteArray hex(const char *text) { return QByteArray::fromHex(text); }

std::optional<VhMap> decoded(bool isCbor, const QByteArray &body)
{
    return isCbor ? fromCbor(body) : fromDataStream(body);
}

} // namespace

class TestQtVhBodyCodec : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void goldenBytes_data()
    {
        const Rows<VhMap, QByteArray, QByteArray> row("map", "dataStream", "cbor");
        row("empty", {}, {}, hex("A0"));
        row("text", {{u"name"_qs, u"x"_qs}},
            hex("00000001 00000008 006E0061006D0065 0000000A 00 00000002 0078"),
            hex("A1 646E616D65 6178"));
        row("64-bit integer", {{u"id"_qs, qint64(-2)}},
            hex("00000001 00000004 00690064 00000004 00 FFFFFFFFFFFFFFFE"), hex("A1 626964 21"));
        row("flag", {{u"b"_qs, true}}, hex("00000001 00000002 0062 00000001 00 01"),
            hex("A1 6162 F5"));
        row("hash in a list", {{u"l"_qs, QVariantList{VhMap{{QString(), 7}}}}},
            hex("00000001 00000002 006C 00000009 00 00000001 0000001C 00 00000001 FFFFFFFF "
                "00000002 00 "
                "00000007"),
            hex("A1 616C 81 A1 60 07"));
    }

    void goldenBytes()
    {
        QFETCH(const VhMap, map);
        QFETCH(const QByteArray, dataStream);
        QFETCH(const QByteArray, cbor);
        QCOMPARE(toDataStream(map).toHex(), dataStream.toHex());
        QCOMPARE(toCbor(map).toHex(), cbor.toHex());
        // What follows is ignored.
        if (!map.isEmpty())
            QCOMPARE(fromDataStream(dataStream + "rest"), map);
        QCOMPARE(fromCbor(cbor + "rest")->size(), map.size());
    }

    void dataStreamKeepsValues()
    {
        const QDate date(2024, 2, 29);
        const QTime time(23, 59, 58, 999);
        const auto null = [](auto value) {
            return QVariant(QMetaType::fromType<decltype(value)>());
        };
        const VhMap shared{{u"a"_qs, VhMap()}, {u"b"_qs, 2}};
        QVariantList values;
        values << QVariant() << QVariant::fromValue(nullptr) << false << -1 << 0xFFFFFFFFu << 0.1
               << QVariant::fromValue(-1L) << QVariant::fromValue(1UL) << 0.5F << QChar(u'\u20AC')
               << std::numeric_limits<qint64>::min() << std::numeric_limits<quint64>::max()
               << QVariant::fromValue(short(-3)) << QVariant::fromValue(ushort(3))
               << QVariant::fromValue(qint8(-3)) << QVariant::fromValue(uchar(3)) << u"\u20AC"_qs
               << QString() << u""_qs << null(QString()) << null(0) << null(QVariantList())
               << null(QUrl()) << null(QDateTime()) << QStringList{u"a"_qs, QString()}
               << QByteArray("\0\xFF", 2) << QByteArray()
               << QVariant::fromValue(QByteArrayList{"a", ""}) << QBitArray() << QBitArray(9, true)
               << date << time << QDateTime() << QDateTime(date, time)
               << QDateTime(date, time, Qt::UTC) << QDateTime(date, time, Qt::OffsetFromUTC, -3600)
               << QDateTime(date, time, QTimeZone("America/Argentina/Buenos_Aires"))
               << QDateTime(date, time, QTimeZone("Own/Zone", 3600, u"name"_qs, u"N"_qs))
               << QUrl(u"https://example.com/%20?q#f"_qs)
               << QUuid(u"{12345678-9abc-def0-1234-56789abcdef0}"_qs) << QSize(1, -1)
               << QRectF(1, 2, 3, 4) << QLineF(1, 2, 3, 4) << QPointF(1, 2)
               << QVariant(QVariantList{1, QVariantList{}, u"a"_qs})
               << QVariant(QVariantList(100, QVariantList{u"a"_qs, QUrl()}))
               << QVariantMap{{u"a"_qs, 1}, {u"b"_qs, QVariantMap()}}
               << VhMap{{u"a"_qs, VhMap{{u"b"_qs, 2}}}}
               << QVariant(QVariantList{VhMap(), shared, shared, VhMap{{u"c"_qs, shared}}});
        for (const QVariant &value : values) {
            const VhMap map{{u"key"_qs, value}};
            QByteArray asQtHasIt;
            QDataStream stream(&asQtHasIt, QIODevice::WriteOnly);
            stream.setVersion(QDataStream::Qt_5_12);
            stream << map;
            QVERIFY2(toDataStream(map) == asQtHasIt, value.typeName());
            const auto decoded = fromDataStream(asQtHasIt);
            QVERIFY2(decoded, value.typeName());
            const QVariant found = decoded->value(u"key"_qs);
            QCOMPARE(found.typeId(), value.typeId());
            QCOMPARE(found, value);
            QCOMPARE(found.isNull(), value.isNull());
        }
    }

    void cborKeepsJsonLikeValues()
    {
        const VhMap map = {{u"text"_qs, u"\u20AC"_qs},
                           {u"id"_qs, std::numeric_limits<qint64>::max()},
                           {u"double"_qs, 0.1},
                           {u"bytes"_qs, QByteArray("\xFF")},
                           {u"url"_qs, QUrl(u"https://example.com/"_qs)},
                           {u"time"_qs, QDateTime(QDate(2024, 2, 29), QTime(1, 2), Qt::UTC)},
                           {u"map"_qs, QVariantMap{{u"b"_qs, false}}},
                           {u"list"_qs, QVariantList{qint64(1), u"a"_qs}}};
        QCOMPARE(fromCbor(toCbor(map)), map);
        // A tagged map, something else, and strings and containers of indefinite length.
        QCOMPARE(fromCbor(hex("D9D9F7 A1 6162 F5")), (VhMap{{u"b"_qs, true}}));
        QCOMPARE(fromCbor(hex("83 01 02 03")), VhMap());
        QCOMPARE(fromCbor(hex("BF 7F 6161 6162 FF 9F F6 FF FF"))->value(u"ab"_qs),
                 QVariant(QVariantList{QVariant::fromValue(nullptr)}));
    }

    void refusesHostileBodies_data()
    {
        const Rows<bool, QByteArray> row("isCbor", "body");
        row("half a count", false, hex("0000"));
        row("hash count that lies", false, hex("FFFFFFFF 00000000 0000000001"));
        row("key length that lies", false, hex("00000001 7FFFFFFE 0061"));
        row("key of half a character", false, hex("00000001 00000001 61 00000001 00 01"));
        // The value of an empty key.
        const auto value = [&row](const char *name, const char *text) {
            row(name, false, hex("00000001 00000000") + hex(text));
        };
        value("list count that lies", "00000009 00 FFFFFFFF 0000000000");
        value("list count a little too big", "00000009 00 00000002 00000001 00 01 00000000");
        value("map count that lies", "00000008 00 80000000 00000000 0000000001");
        value("text length that lies", "0000000A 00 FFFFFFFE 0061");
        value("texts count that lies", "0000000B 00 FFFFFFFF FFFFFFFF");
        value("bytes length that lies", "0000000C 00 7FFFFFFF 61");
        value("byte arrays count that lies", "00000031 00 10000000 00000000");
        value("bits that lie", "0000000D 00 FFFFFFFF 61");
        value("bits beyond the last one", "0000000D 00 00000001 03");
        value("type 0xFFFFFFFF", "FFFFFFFF 00 00000000");
        value("font", "00000040 00 00000000 00000000");
        value("regular expression", "0000002C 00 00000000 00000000");
        value("JSON document", "00000030 00 00000002 7B7D");
        value("variant in a variant", "00000029 00 00000001 00 01");
        value("user type", "00000400 00 00000009 512E506F696E7400 00 00000000");
        value("user type, known to Qt", "00000400 00 00000005 514A736F 00");
        value("type that Qt 6 names", "00010000 00 00000005 514A736F 00");
        value("date and time of no kind", "00000010 00 0000000000258F6B 00000000 04");
        value("time zone that leads elsewhere",
              "00000010 00 0000000000258F6B 00000000 03 0000000A 002E002E002F002E002E");
        // Each is looked for in several folders.
        QByteArray zones = "00000009 00 000003E9";
        for (int i = 0; i < 1001; ++i)
            zones += "00000010 00 0000000000258F6B 00000000 03 00000002"
                + QByteArray::number(0x1000 + i, 16);
        value("too many time zones", zones.constData());
        row("CBOR: map count that lies", true, hex("BB FFFFFFFFFFFFFFFF 01 01"));
        row("CBOR: map count that overflows", true, hex("BB 8000000000000000 01 01"));
        row("CBOR: array count that lies", true, hex("A1 01 9A 40000000 01"));
        row("CBOR: counts that lie together", true, hex("83 83 83 01 02"));
        row("CBOR: text length that lies", true, hex("A1 01 7B 7FFFFFFFFFFFFFFF 61"));
        row("CBOR: chunk length that lies", true, hex("A1 01 5F 5A 7FFFFFFF 61"));
        row("CBOR: chunk in a chunk", true, hex("A1 01 5F 5F 4161 FF FF"));
        row("CBOR: chunk of another type", true, hex("A1 01 5F 6161 FF"));
        row("CBOR: break for a value", true, hex("BF 01 FF"));
        row("CBOR: break in an array of known length", true, hex("A1 01 82 01 FF"));
        row("CBOR: tag of nothing", true, hex("A1 01 C1"));
        row("CBOR: reserved information", true, hex("A1 01 1C"));
        row("CBOR: text that is not UTF-8", true, hex("A1 01 61FF"));
    }

    void refusesHostileBodies()
    {
        QFETCH(const bool, isCbor);
        QFETCH(const QByteArray, body);
        const qint64 before = reservedMemory();
        QVERIFY(!decoded(isCbor, body));
        QVERIFY(reservedMemory() - before < 64'000'000);
    }

    void boundsNesting()
    {
        struct Case {
            const char *name, *start, *level, *inside, *end;
        };
        // The null flag of a value comes first, each level ends with the type of what it holds.
        const Case cases[] = {
            {"lists", "00000001 00000000 00000009", "00 00000001 00000009", "00 00000000", ""},
            {"maps", "00000001 00000000 00000008", "00 00000001 00000000 00000008", "00 00000000",
             ""},
            {"hashes", "00000001 00000000 0000001C", "00 00000001 00000000 0000001C", "00 00000000",
             ""},
            {"CBOR arrays", "A1 01", "81", "80", ""},
            {"CBOR arrays of indefinite length", "A1 01", "9F", "80", "FF"},
            {"CBOR maps", "A1 01", "A1 01", "A0", ""},
            {"CBOR tags", "A1 01", "C1", "01", ""}};
        for (const Case &c : cases) {
            for (const int levels : {90, 100, 100'000, 5'000'000}) {
                const QByteArray body = hex(c.start) + hex(c.level).repeated(levels) + hex(c.inside)
                    + hex(c.end).repeated(levels);
                QVERIFY2(decoded(*c.start == 'A', body).has_value() == (levels == 90), c.name);
            }
        }
    }

    void refusesEveryTruncation()
    {
        const VhMap map = {{u"text"_qs, u"value"_qs},
                           {u"list"_qs, QVariantList{1, 2.0, QByteArray("bytes")}},
                           {u"time"_qs, QDateTime(QDate(2024, 2, 29), QTime(1, 2))},
                           {u"bits"_qs, QBitArray(20, true)},
                           {u"hash"_qs, VhMap{{u"a"_qs, true}}}};
        for (const bool isCbor : {false, true}) {
            const QByteArray body = isCbor ? toCbor(map) : toDataStream(map);
            QVERIFY(decoded(isCbor, body));
            for (qsizetype size = 0; size < body.size(); ++size)
                QVERIFY2(!decoded(isCbor, body.first(size)), qPrintable(QString::number(size)));
        }
    }
};

QTEST_GUILESS_MAIN(TestQtVhBodyCodec)
#include "tst_qtvhbodycodec.moc"
