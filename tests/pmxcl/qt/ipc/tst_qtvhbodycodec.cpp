// Which message bodies the decoders accept and reject, beyond what the fuzz target fuzz_link_bodies
// compares with Qt. The tables are in bodies.json, their bytes in hexadecimal.

#include "processmemory.h"
#include "qtvhbodycodec.h"
#include "vectors.h"

#include <QUrl>

using VhMap = QHash<QString, QVariant>;
using namespace QtVhBodyCodec;

namespace {

QByteArray hex(const QString &text) { return QByteArray::fromHex(text.toLatin1()); }

} // namespace

class TestQtVhBodyCodec : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void golden_data() { ADD_VECTORS("bodies.json", "golden"); }
    void golden()
    {
        const QHash<QString, VhMap> maps = {
            {u"empty"_qs, {}},
            {u"text"_qs, {{u"name"_qs, u"x"_qs}}},
            {u"64-bit integer"_qs, {{u"id"_qs, qint64(-2)}}},
            {u"flag"_qs, {{u"b"_qs, true}}},
            {u"hash in a list"_qs, {{u"l"_qs, QVariantList{VhMap{{QString(), 7}}}}}}};
        const VectorRow row;
        const VhMap map = maps[row.text(0)];
        QCOMPARE(toDataStream(map).toHex(), hex(row.text(1)).toHex());
        QCOMPARE(toCbor(map).toHex(), hex(row.text(2)).toHex());
        // Bytes after it are ignored.
        if (!map.isEmpty())
            QCOMPARE(fromDataStream(hex(row.text(1)) + "rest"), map);
        QCOMPARE(fromCbor(hex(row.text(2)) + "rest")->size(), map.size());
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
        // A tagged map, an item other than a map, and strings and containers of indefinite length.
        QCOMPARE(fromCbor(hex(u"D9D9F7 A1 6162 F5"_qs)), (VhMap{{u"b"_qs, true}}));
        QCOMPARE(fromCbor(hex(u"83 01 02 03"_qs)), VhMap());
        // A key and a chunk whose bytes would be invalid as items.
        QCOMPARE(fromCbor(hex(u"A1 61 1C 01"_qs))->size(), 1);
        QCOMPARE(fromCbor(hex(u"A2 01 5F 41FF FF 02 03"_qs))->size(), 2);
        QCOMPARE(fromCbor(hex(u"BF 7F 6161 6162 FF 9F F6 FF FF"_qs))->value(u"ab"_qs),
                 QVariant(QVariantList{QVariant::fromValue(nullptr)}));
    }

    void hashesThatShareTheirData()
    {
        const VhMap one{{u"a"_qs, 1}};
        const VhMap other{{u"b"_qs, 2}};
        const VhMap map{{QString(), QVariantList{one, one, other, VhMap(), other}}};
        QCOMPARE(fromDataStream(toDataStream(map)), map);
    }

    /// What is decoded and encoded again consists of the same bytes.
    void kept_data() { ADD_VECTORS("bodies.json", "kept"); }
    void kept()
    {
        const VectorRow row;
        const std::optional<VhMap> map = fromDataStream(hex(row.text(1)));
        QVERIFY(map);
        QCOMPARE(toDataStream(*map).toHex(), hex(row.text(1)).toHex());
    }

    void refused_data() { ADD_VECTORS("bodies.json", "refused"); }
    void refused()
    {
        const VectorRow row;
        const qint64 before = reservedMemory();
        QVERIFY(!decoded(row, hex(row.text(1))));
        QVERIFY(reservedMemory() - before < 64'000'000);
    }

    void timeZonesAreBounded()
    {
        const QByteArray zone = hex(u"00000010 00 0000000000258F6B 00000000 03 00000002 0041"_qs);
        const QByteArray begin = hex(u"00000001 00000000 00000009 00"_qs);
        QVERIFY(fromDataStream(begin + hex(u"000003E8"_qs) + zone.repeated(1000)));
        QVERIFY(!fromDataStream(begin + hex(u"000003E9"_qs) + zone.repeated(1001)));
        for (const int letters : {64, 65}) {
            const QByteArray name =
                hex(u"000000"_qs) + char(2 * letters) + QByteArray("\0A", 2).repeated(letters);
            QCOMPARE(
                fromDataStream(begin + hex(u"00000001"_qs) + zone.chopped(6) + name).has_value(),
                letters == 64);
        }
    }

    void nesting_data() { ADD_VECTORS("bodies.json", "nested"); }
    void nesting()
    {
        const VectorRow row;
        // The message, nested levels, and their contents: 100 levels are allowed.
        for (const int levels : {98, 99, 5'000'000}) {
            const QByteArray body = hex(row.text(1)) + hex(row.text(2)).repeated(levels)
                + hex(row.text(3)) + hex(row.text(4)).repeated(levels);
            QCOMPARE(decoded(row, body).has_value(), levels == 98);
        }
    }

private:
    static std::optional<VhMap> decoded(const VectorRow &row, const QByteArray &body)
    {
        return row.text(0).startsWith(u"CBOR") ? fromCbor(body) : fromDataStream(body);
    }
};

QTEST_GUILESS_MAIN(TestQtVhBodyCodec)
#include "tst_qtvhbodycodec.moc"
