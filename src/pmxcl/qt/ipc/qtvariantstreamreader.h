#pragma once

#include "qtscancursor.h"

#include <QByteArrayView>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QTimeZone>
#include <QVariant>

#include <array>
#include <optional>

/**
 * Reads a QHash<QString, QVariant> as QDataStream writes it (version Qt_5_12), from anybody.
 *
 * QDataStream's own reading reserves memory for as many items as a list announces, descends into
 * lists as deep as they go, and makes a value of whatever type is named. Here counts and lengths
 * are held against the bytes that are there, nesting and time zones are bounded, and only plain
 * values let in: numbers, texts, byte arrays, bit arrays, dates and times, URLs, UUIDs, geometry,
 * and lists, maps and hashes of them. Bytes after the hash are ignored.
 */
class QtVariantStreamReader {
public:
    /// Nothing when the body is cut off, wrong or not of plain values. Linear in its size.
    static std::optional<QHash<QString, QVariant>> readHash(QByteArrayView body);

private:
    explicit QtVariantStreamReader(QByteArrayView body) : m_cursor(body) { }

    bool readVariant(QVariant &value, int depth);
    bool readCommonValue(quint32 type, QVariant &value, int depth);
    bool readDateTime(QDateTime &dateTime);
    bool readOtherValue(quint32 type, const char *begin, QVariant &value);
    template <typename Number> bool readNumber(QVariant &value);
    bool readNestedHash(QVariant &value, int depth);
    bool findKnownHash(QVariant &value, int depth);
    bool readList(QVariantList &list, int depth);
    template <typename Map> bool readMap(Map &map, int depth);
    bool readStringList(QStringList &list);
    bool readString(QString &text);
    bool readKey(QString &key);
    bool readUtf16(QByteArrayView &utf16, bool &isNull);
    bool readBytes(QByteArrayView &bytes, bool &isNull);
    bool readTimeZone(const char *begin, QTimeZone &zone);
    template <typename Value> bool readByQt(const char *begin, Value &value);

    bool skipOtherValue(quint32 type);
    bool skipBytes();
    bool skipByteArrayList();
    bool skipBitArray();
    bool skipTimeZone();

    struct Key {
        QByteArrayView utf16;
        QString text;
    };
    struct Hash {
        QByteArrayView bytes;
        int depth = 0;
        QVariant value;
    };

    QtScanCursor m_cursor;
    // The records of a long list have the same keys, and many of the same hashes that say nothing:
    // what was read lately is shared with what has the same bytes.
    /// Two for each place that a key may have.
    std::array<std::array<Key, 2>, 128> m_keys;
    std::array<Hash, 8> m_hashes;
    size_t m_oldestHash = 0;
    /// By the bytes that spell them.
    QHash<QByteArrayView, QTimeZone> m_timeZones;
};
