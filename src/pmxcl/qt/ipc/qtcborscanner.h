#pragma once

#include "qtscancursor.h"

#include <QByteArrayView>

/**
 * Looks through one CBOR data item (RFC 8949) and tells whether it is safe to let QCborValue read
 * it: counts and lengths are held against the bytes that are there, and nesting is bounded. Whether
 * texts are valid UTF-8 and the like is left to QCborValue. Bytes after the item are ignored.
 */
class QtCborScanner {
public:
    /// Linear in the size of the body.
    static bool isSafe(QByteArrayView body);

private:
    explicit QtCborScanner(QByteArrayView body) : m_cursor(body) { }

    bool scanItem(int depth);
    bool scanString(quint8 majorType, quint8 info);
    bool scanItems(quint8 info, quint64 itemsPerEntry, int depth);
    bool readArgument(quint8 info, quint64 &argument);
    /// Whether the next byte ends what has an indefinite length; if so it is taken.
    bool takeBreak();

    QtScanCursor m_cursor;
};
