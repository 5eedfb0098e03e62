#pragma once

#include "qtscancursor.h"

#include <QByteArrayView>

/**
 * Scans a QHash<QString, QVariant> in QDataStream's format (version Qt_5_12), and says whether
 * QDataStream can safely decode it.
 *
 * QDataStream itself recurses into lists without a limit, and creates values of any type that the
 * bytes name. The scanner checks that counts and lengths fit into the available bytes, limits
 * nesting and lookups of time zones, and accepts only plain values: numbers, texts, byte arrays,
 * bit arrays, dates and times, URLs, UUIDs, geometry, and lists, maps and hashes of them. Bytes
 * after the hash are ignored.
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
    /// A length, and as many bytes.
    bool scanBytes();
    bool scanText();
    bool takeBytes(QByteArrayView &bytes);
    /// A count, and as many items of at least minSize bytes, each scanned by the function.
    template <typename ScanItem> bool scanItems(quint64 minSize, ScanItem scanItem);

    QtScanCursor m_cursor;
    int m_timeZones = 0;
};
