#pragma once

#include "qtscancursor.h"

#include <QByteArrayView>

/**
 * Looks through a QHash<QString, QVariant> as QDataStream writes it (version Qt_5_12) and tells
 * whether it is safe to let QDataStream read it.
 *
 * QDataStream descends into lists as deep as they go, and makes a value of whatever type is named.
 * Here counts and lengths are held against the bytes that are there, nesting and the lookups of
 * time zones are bounded, and only plain values let in: numbers, texts, byte arrays, bit arrays,
 * dates and times, URLs, UUIDs, geometry, and lists, maps and hashes of them. Bytes after the hash
 * are ignored.
 */
class QtVariantStreamScanner {
public:
    /// Linear in the size of the body.
    static bool isSafe(QByteArrayView body);

private:
    explicit QtVariantStreamScanner(QByteArrayView body) : m_cursor(body) { }

    bool scanVariant(int depth);
    bool scanValue(quint32 type, int depth);
    bool scanMap(int depth);
    bool scanDateTime();
    bool scanTimeZone();
    /// A length and as many bytes.
    bool scanBytes();
    bool scanText();
    bool takeBytes(QByteArrayView &bytes);
    /// A count and as many items of at least minSize bytes, each of which the function scans.
    template <typename ScanItem> bool scanItems(quint64 minSize, ScanItem scanItem);

    QtScanCursor m_cursor;
    int m_timeZones = 0;
};
