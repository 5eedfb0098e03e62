#include "qtvariantstreamscanner.h"

#include "vhbodylimits.h"

#include <QMetaType>

namespace {

/// The length that stands for a null string or byte array.
constexpr quint32 nullLength = 0xFFFFFFFF;

// The least that an item takes up: the length of a string, and the type and null flag of a variant.
constexpr quint32 minStringSize = sizeof(quint32);
constexpr quint32 minVariantSize = sizeof(quint32) + sizeof(qint8);

/// Bytes of a value whose type fixes them; -1 for other types. See "Serializing Qt Data Types".
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
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Double:
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

/// Whether a name, in big-endian UTF-16, may be looked up among the files of the time zone
/// database: without dots it does not lead out of their folder.
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

/// The name that QTimeZone gives, in big-endian UTF-16, to a zone of its own making.
constexpr QByteArrayView customTimeZone("\0O\0f\0f\0s\0e\0t\0F\0r\0o\0m\0U\0t\0c", 26);

} // namespace

bool QtVariantStreamScanner::isSafeHash(QByteArrayView body)
{
    return QtVariantStreamScanner(body).scanVariantMap(1);
}

bool QtVariantStreamScanner::scanVariant(int depth)
{
    quint32 type = 0;
    qint8 isNull = 0;
    return m_cursor.read(type) && m_cursor.read(isNull) && scanValue(type, depth);
}

bool QtVariantStreamScanner::scanValue(quint32 type, int depth)
{
    if (const int size = fixedSize(type); size >= 0)
        return m_cursor.skip(static_cast<quint64>(size));
    QByteArrayView bytes;
    switch (type) {
    case QMetaType::QString:
        return readString(bytes);
    case QMetaType::QByteArray:
    case QMetaType::QUrl:
        return readByteArray(bytes);
    case QMetaType::QStringList:
        return scanItems(minStringSize, [&] { return readString(bytes); });
    case QMetaType::QByteArrayList:
        return scanItems(minStringSize, [&] { return readByteArray(bytes); });
    case QMetaType::QVariantList:
        return scanVariantList(depth + 1);
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return scanVariantMap(depth + 1);
    case QMetaType::QBitArray:
        return scanBitArray();
    case QMetaType::QDateTime:
        return scanDateTime();
    default:
        return false;
    }
}

template <typename ScanItem>
bool QtVariantStreamScanner::scanItems(quint32 minSize, ScanItem scanItem)
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

bool QtVariantStreamScanner::scanVariantList(int depth)
{
    return depth <= VhBodyLimits::maxDepth
        && scanItems(minVariantSize, [&] { return scanVariant(depth); });
}

bool QtVariantStreamScanner::scanVariantMap(int depth)
{
    QByteArrayView key;
    return depth <= VhBodyLimits::maxDepth && scanItems(minStringSize + minVariantSize, [&] {
               return readString(key) && scanVariant(depth);
           });
}

bool QtVariantStreamScanner::readString(QByteArrayView &utf16)
{
    return readByteArray(utf16) && utf16.size() % qsizetype(sizeof(char16_t)) == 0;
}

bool QtVariantStreamScanner::readByteArray(QByteArrayView &bytes)
{
    quint32 length = 0;
    if (!m_cursor.read(length))
        return false;
    if (length == nullLength)
        length = 0;
    bytes = m_cursor.rest();
    if (!m_cursor.skip(length))
        return false;
    bytes = bytes.first(length);
    return true;
}

bool QtVariantStreamScanner::scanBitArray()
{
    constexpr quint64 bitsPerByte = 8;
    quint32 bits = 0;
    return m_cursor.read(bits) && m_cursor.skip((bits + bitsPerByte - 1) / bitsPerByte);
}

bool QtVariantStreamScanner::scanDateTime()
{
    qint64 julianDay = 0;
    quint32 msecsOfDay = 0;
    qint8 timeSpec = 0;
    if (!m_cursor.read(julianDay) || !m_cursor.read(msecsOfDay) || !m_cursor.read(timeSpec))
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
    if (!readString(name) || !isTimeZoneName(name))
        return false;
    if (name != customTimeZone)
        return true;
    // Name, offset, display name, abbreviation, territory, comment.
    QByteArrayView text;
    return readString(name) && isTimeZoneName(name) && m_cursor.skip(sizeof(qint32))
        && readString(text) && readString(text) && m_cursor.skip(sizeof(qint32))
        && readString(text);
}
