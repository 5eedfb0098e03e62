#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Decodes a marker followed by two hexadecimal digits to a byte. Any other marker is kept, whereas
/// QByteArray::fromPercentEncoding() would decode it to some byte.
QByteArray decodedHexPairs(QByteArrayView text, char marker);
