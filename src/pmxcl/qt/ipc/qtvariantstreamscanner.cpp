#include "qtvariantstreamscanner.h"

#include "qtvariantstreamformat.h"
#include "vhbodylimits.h"

#include <QMetaType>

namespace {

// The minimum sizes of items: the length of a text; the type and null flag of a variant.
constexpr quint64 minTextSize = sizeof(quint32);
constexpr quint64 minVariantSize = sizeof(quint32) + sizeof(qint8);
constexpr quint64 minEntrySize = minTextSize + minVariantSize;

/// The size of a value of a fixed-size type, in bytes; -1 for other types.
int fixedSize(quint32 type)
{
    switch (type) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return 0;
    case QMetaType::Bool:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return 1;
    case QMetaType::QChar:
    case QMetaType::Short:
    case QMetaType::UShort:
        return 2;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::QTime:
        return 4;
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Float:
    case QMetaType::QDate:
    case QMetaType::QSize:
    case QMetaType::QPoint:
        return 8;
    case QMetaType::QUuid:
    case QMetaType::QRect:
    case QMetaType::QLine:
    case QMetaType::QSizeF:
    case QMetaType::QPointF:
        return 16;
    case QMetaType::QRectF:
    case QMetaType::QLineF:
        return 32;
    default:
        return -1;
    }
}

/// Whether a name, in big-endian UTF-16, may be looked up in the files of the time zone database:
/// without dots it cannot lead out of their folder (path traversal).
bool isTimeZoneName(QByteArrayView name)
{
    constexpr qsizetype maxSize = 128;
    if (name.size() > maxSize)
        return false;
    for (qsizetype i = 0; i + 1 < name.size(); i += 2) {
        if (name[i] == 0 && name[i + 1] == '.')
            return false;
    }
    return true;
}

/// The name of a custom QTimeZone.
constexpr QByteArrayView customTimeZone("\0O\0f\0f\0s\0e\0t\0F\0r\0o\0m\0U\0t\0c", 26);

} // namespace

bool QtVariantStreamScanner::isSafe(QByteArrayView body)
{
    return QtVariantStreamScanner(body).scanMap(1);
}

bool QtVariantStreamScanner::scanVariant(int depth)
{
    quint32 type = 0;
    return m_cursor.read(type) && m_cursor.skip(sizeof(qint8)) && scanValue(type, depth);
}

bool QtVariantStreamScanner::scanValue(quint32 type, int depth)
{
    switch (type) {
    case QMetaType::QString:
        return scanText();
    case QMetaType::QByteArray:
    case QMetaType::QUrl:
        return scanBytes();
    case QMetaType::QStringList:
        return scanItems(minTextSize, [this] { return scanText(); });
    case QMetaType::QByteArrayList:
        return scanItems(minTextSize, [this] { return scanBytes(); });
    case QMetaType::QVariantList:
        return depth < VhBodyLimits::maxDepth
            && scanItems(minVariantSize, [this, depth] { return scanVariant(depth + 1); });
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return scanMap(depth + 1);
    case QMetaType::QDateTime:
        return scanDateTime();
    case QMetaType::QBitArray: {
        constexpr quint64 bitsPerByte = 8;
        quint32 bits = 0;
        return m_cursor.read(bits) && m_cursor.skip((bits + bitsPerByte - 1) / bitsPerByte);
    }
    default:
        const int size = fixedSize(type);
        return size >= 0 && m_cursor.skip(static_cast<quint64>(size));
    }
}

bool QtVariantStreamScanner::scanMap(int depth)
{
    return depth <= VhBodyLimits::maxDepth
        && scanItems(minEntrySize, [this, depth] { return scanText() && scanVariant(depth); });
}

bool QtVariantStreamScanner::scanDateTime()
{
    qint8 timeSpec = 0;
    if (!m_cursor.skip(sizeof(qint64) + sizeof(quint32)) || !m_cursor.read(timeSpec))
        return false;
    switch (timeSpec) {
    case Qt::LocalTime:
    case Qt::UTC:
        return true;
    case Qt::OffsetFromUTC:
        return m_cursor.skip(sizeof(qint32));
    case Qt::TimeZone:
        return scanTimeZone();
    default:
        return false;
    }
}

bool QtVariantStreamScanner::scanTimeZone()
{
    QByteArrayView name;
    if (++m_timeZones > VhBodyLimits::maxTimeZones || !takeBytes(name) || !isTimeZoneName(name))
        return false;
    if (name != customTimeZone)
        return true;
    // Name, offset, display name, abbreviation, territory, comment.
    return takeBytes(name) && isTimeZoneName(name) && m_cursor.skip(sizeof(qint32)) && scanBytes()
        && scanBytes() && m_cursor.skip(sizeof(qint32)) && scanBytes();
}

bool QtVariantStreamScanner::scanBytes()
{
    QByteArrayView bytes;
    return takeBytes(bytes);
}

bool QtVariantStreamScanner::scanText()
{
    QByteArrayView utf16;
    return takeBytes(utf16) && utf16.size() % qsizetype(sizeof(char16_t)) == 0;
}

bool QtVariantStreamScanner::takeBytes(QByteArrayView &bytes)
{
    quint32 length = 0;
    return m_cursor.read(length)
        && m_cursor.take(length == QtVariantStreamFormat::nullLength ? 0 : length, bytes);
}

template <typename ScanItem>
bool QtVariantStreamScanner::scanItems(quint64 minSize, ScanItem scanItem)
{
    quint32 count = 0;
    if (!m_cursor.read(count) || !m_cursor.announce(count, minSize))
        return false;
    for (; count > 0; --count) {
        m_cursor.begin(minSize);
        if (!scanItem())
            return false;
    }
    return true;
}
