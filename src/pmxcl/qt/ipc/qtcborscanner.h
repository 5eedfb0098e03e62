#pragma once

#include "qtscancursor.h"

#include <QByteArrayView>

/**
 * Scans one CBOR data item (RFC 8949), and says whether QCborValue can safely decode it: counts and
 * lengths must fit into the available bytes, and nesting is limited. Other checks, such as valid
 * UTF-8, are left to QCborValue. Bytes after the item are ignored.
 */
class QtCborScanner {
public:
    /// Linear in the size of the body.
    static bool isSafe(QByteArrayView body);

private:
    explicit QtCborScanner(QByteArrayView body) : m_cursor(body) { }

    bool scanItem(int depth);
    bool scanString(quint8 info);
    bool scanItems(quint8 info, quint64 itemsPerEntry, int depth);
    bool readArgument(quint8 info, quint64 &argument);
    /// Whether the next byte ends an item of indefinite length ("break"); if so, consumes it.
    bool takeBreak();

    QtScanCursor m_cursor;
};
