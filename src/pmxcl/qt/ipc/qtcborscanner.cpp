#include "qtcborscanner.h"

#include "vhbodylimits.h"

namespace {

// RFC 8949, section 3: an initial byte has a major type (3 bits) and additional information (5
// bits).
enum MajorType : quint8 {
    ByteString = 2,
    TextString = 3,
    Array = 4,
    Map = 5,
    Tag = 6,
};
constexpr int infoBits = 5;
constexpr quint8 infoMask = 0x1F;
/// Below this value the additional information is the argument itself; from it on, the argument is
/// in the next 1, 2, 4 or 8 bytes.
constexpr quint8 oneByteArgument = 24;
constexpr quint8 twoByteArgument = 25;
constexpr quint8 fourByteArgument = 26;
constexpr quint8 eightByteArgument = 27;
constexpr quint8 indefiniteLength = 31;
constexpr char breakByte = '\xFF';

constexpr quint64 minItemSize = 1;

} // namespace

bool QtCborScanner::isSafe(QByteArrayView body) { return QtCborScanner(body).scanItem(1); }

bool QtCborScanner::scanItem(int depth)
{
    quint8 initial = 0;
    quint64 argument = 0;
    if (depth > VhBodyLimits::maxDepth || !m_cursor.read(initial))
        return false;
    const auto majorType = static_cast<quint8>(initial >> infoBits);
    const auto info = static_cast<quint8>(initial & infoMask);
    switch (majorType) {
    case ByteString:
    case TextString:
        return scanString(info);
    case Array:
        return scanItems(info, 1, depth + 1);
    case Map:
        return scanItems(info, 2, depth + 1);
    case Tag:
        return readArgument(info, argument) && scanItem(depth + 1);
    default: // integers, simple values and floating-point numbers
        return readArgument(info, argument);
    }
}

bool QtCborScanner::scanString(quint8 info)
{
    quint64 length = 0;
    if (info != indefiniteLength)
        return readArgument(info, length) && m_cursor.skip(length);
    while (!takeBreak()) {
        quint8 initial = 0;
        // A chunk of another type ends the decoder, whatever follows.
        if (!m_cursor.read(initial) || !readArgument(initial & infoMask, length)
            || !m_cursor.skip(length))
            return false;
    }
    return true;
}

bool QtCborScanner::scanItems(quint8 info, quint64 itemsPerEntry, int depth)
{
    if (info == indefiniteLength) {
        while (!takeBreak()) {
            for (quint64 i = 0; i < itemsPerEntry; ++i) {
                if (!scanItem(depth))
                    return false;
            }
        }
        return true;
    }
    quint64 entries = 0;
    if (!readArgument(info, entries) || !m_cursor.announce(entries, itemsPerEntry * minItemSize))
        return false;
    for (; entries > 0; --entries) {
        for (quint64 i = 0; i < itemsPerEntry; ++i) {
            m_cursor.begin(minItemSize);
            if (!scanItem(depth))
                return false;
        }
    }
    return true;
}

bool QtCborScanner::readArgument(quint8 info, quint64 &argument)
{
    const auto readAs = [&]<typename Integer>(Integer value) {
        const bool ok = m_cursor.read(value);
        argument = value;
        return ok;
    };
    switch (info) {
    case oneByteArgument:
        return readAs(quint8());
    case twoByteArgument:
        return readAs(quint16());
    case fourByteArgument:
        return readAs(quint32());
    case eightByteArgument:
        return readAs(quint64());
    default:
        argument = info;
        return info < oneByteArgument;
    }
}

bool QtCborScanner::takeBreak()
{
    return m_cursor.rest().startsWith(breakByte) && m_cursor.skip(1);
}
