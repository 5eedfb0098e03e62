#pragma once

#include "qtscancursor.h"

#include <QByteArrayView>

/**
 * Looks through a QHash<QString, QVariant> as QDataStream writes it (version Qt_5_12), and tells
 * whether it is safe to let QDataStream read it.
 *
 * QDataStream itself reserves memory for as many items as a list announces, descends into lists as
 * deep as they go, and makes a value of whatever type is named. Here counts and lengths are held
 * against the bytes that are there, nesting is bounded, and only plain values are let through:
 * numbers, texts, byte arrays, bit arrays, dates and times, URLs, UUIDs, geometry, and lists, maps
 * and hashes of them. Bytes after the hash are ignored.
 */
class QtVariantStreamScanner {
public:
    /// Linear in the size of the body.
    static bool isSafeHash(QByteArrayView body);

private:
    explicit QtVariantStreamScanner(QByteArrayView body) : m_cursor(body) { }

    bool scanVariant(int depth);
    bool scanValue(quint32 type, int depth);
    bool scanVariantList(int depth);
    bool scanVariantMap(int depth);
    template <typename ScanItem> bool scanItems(quint32 minSize, ScanItem scanItem);
    bool readString(QByteArrayView &utf16);
    bool readByteArray(QByteArrayView &bytes);
    bool scanBitArray();
    bool scanDateTime();
    bool scanTimeZone();

    QtScanCursor m_cursor;
};
