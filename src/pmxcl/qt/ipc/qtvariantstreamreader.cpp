#include "qtvariantstreamreader.h"

#include "qtvariantstreamformat.h"
#include "vhbodylimits.h"

#include <QByteArray>
#include <QDataStream>
#include <QDateTime>
#include <QMap>
#include <QMetaType>
#include <QUrl>
#include <QUuid>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <utility>

namespace {

// The least that an item takes up: the length of a string, and the type and null flag of a variant.
constexpr quint32 minStringSize = sizeof(quint32);
constexpr quint32 minVariantSize = sizeof(quint32) + sizeof(qint8);
constexpr quint32 minEntrySize = minStringSize + minVariantSize;

constexpr quint64 uuidSize = 16;

/// Bytes of a value whose type fixes them; -1 for other types.
int fixedSize(quint32 type)
{
    switch (type) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return 0;
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return 1;
    case QMetaType::QChar:
    case QMetaType::Short:
    case QMetaType::UShort:
        return 2;
    case QMetaType::QTime:
        return 4;
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Float:
    case QMetaType::QDate:
    case QMetaType::QSize:
    case QMetaType::QPoint:
        return 8;
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

/// Whether a null variant of the type would hold the same.
bool isDefault(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString().isNull();
    case QMetaType::QByteArray:
        return value.toByteArray().isNull();
    case QMetaType::Double:
        return std::bit_cast<quint64>(value.toDouble()) == 0;
    case QMetaType::QDateTime: // a null one would have no time zone
        return value.toDateTime().isNull() && value.toDateTime().timeSpec() == Qt::LocalTime;
    default:
        return value == QVariant(value.metaType());
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

QString textOf(QByteArrayView utf16)
{
    QString text(utf16.size() / qsizetype(sizeof(char16_t)), Qt::Uninitialized);
    qFromBigEndian<char16_t>(utf16.data(), text.size(), text.data());
    return text;
}

/// Spreads the keys of a record, which are Latin letters (FNV-1a).
size_t placeOfKey(QByteArrayView utf16)
{
    quint32 hash = 2166136261;
    for (qsizetype i = 1; i < utf16.size(); i += 2)
        hash = (hash ^ static_cast<uchar>(utf16[i])) * 16777619;
    return hash >> 16;
}

/// The name that QTimeZone gives to a zone of its own making.
constexpr QByteArrayView customTimeZone("\0O\0f\0f\0s\0e\0t\0F\0r\0o\0m\0U\0t\0c", 26);

/// In bytes. Hashes that say something are usually longer, and met once.
constexpr qsizetype maxKnownHashSize = 512;

} // namespace

std::optional<QHash<QString, QVariant>> QtVariantStreamReader::readHash(QByteArrayView body)
{
    QHash<QString, QVariant> hash;
    if (!QtVariantStreamReader(body).readMap(hash, 1))
        return std::nullopt;
    return hash;
}

bool QtVariantStreamReader::readVariant(QVariant &value, int depth)
{
    const char *const begin = m_cursor.rest().data();
    quint32 type = 0;
    qint8 isNull = 0;
    if (!m_cursor.read(type) || !m_cursor.read(isNull))
        return false;
    if (!readCommonValue(type, value, depth))
        return false;
    if (!value.isValid())
        return readOtherValue(type, begin, value);
    if (isNull != 0 && isDefault(value))
        value = QVariant(value.metaType());
    return true;
}

/// What messages are made of; leaves the value as it is when it is of another type.
bool QtVariantStreamReader::readCommonValue(quint32 type, QVariant &value, int depth)
{
    const auto readInto = [&value](auto read, auto content) {
        const bool ok = read(content);
        value = QVariant::fromValue(std::move(content));
        return ok;
    };
    switch (type) {
    case QMetaType::Bool: {
        quint8 number = 0;
        const bool ok = m_cursor.read(number);
        value = number != 0;
        return ok;
    }
    case QMetaType::Int:
        return readNumber<qint32>(value);
    case QMetaType::UInt:
        return readNumber<quint32>(value);
    case QMetaType::LongLong:
        return readNumber<qint64>(value);
    case QMetaType::ULongLong:
        return readNumber<quint64>(value);
    case QMetaType::Double: {
        quint64 bits = 0;
        const bool ok = m_cursor.read(bits);
        value = std::bit_cast<double>(bits);
        return ok;
    }
    case QMetaType::QString:
        return readInto([this](QString &text) { return readString(text); }, QString());
    case QMetaType::QByteArray: {
        QByteArrayView bytes;
        bool isNull = false;
        const bool ok = readBytes(bytes, isNull);
        value = isNull ? QByteArray() : QByteArray(bytes.data(), bytes.size());
        return ok;
    }
    case QMetaType::QStringList:
        return readInto([this](QStringList &list) { return readStringList(list); }, QStringList());
    case QMetaType::QVariantList:
        return readInto([&](QVariantList &list) { return readList(list, depth + 1); },
                        QVariantList());
    case QMetaType::QVariantMap:
        return readInto([&](QVariantMap &map) { return readMap(map, depth + 1); }, QVariantMap());
    case QMetaType::QVariantHash:
        return readNestedHash(value, depth + 1);
    case QMetaType::QUrl: {
        QByteArrayView encoded;
        bool isNull = false;
        const bool ok = readBytes(encoded, isNull);
        value = QUrl(QString::fromLatin1(encoded));
        return ok;
    }
    case QMetaType::QUuid: {
        QByteArrayView bytes;
        const bool ok = m_cursor.take(uuidSize, bytes);
        value = QUuid::fromRfc4122(bytes);
        return ok;
    }
    case QMetaType::QDateTime:
        return readInto([this](QDateTime &dateTime) { return readDateTime(dateTime); },
                        QDateTime());
    default:
        return true;
    }
}

/// The value began with its type at "begin".
bool QtVariantStreamReader::readOtherValue(quint32 type, const char *begin, QVariant &value)
{
    return skipOtherValue(type) && readByQt(begin, value);
}

template <typename Number> bool QtVariantStreamReader::readNumber(QVariant &value)
{
    Number number = 0;
    const bool ok = m_cursor.read(number);
    value = number;
    return ok;
}

bool QtVariantStreamReader::readList(QVariantList &list, int depth)
{
    quint32 count = 0;
    if (depth > VhBodyLimits::maxDepth || !m_cursor.read(count)
        || !m_cursor.announce(count, minVariantSize))
        return false;
    list.reserve(count);
    for (; count > 0; --count) {
        m_cursor.begin(minVariantSize);
        if (!readVariant(list.emplace_back(), depth))
            return false;
    }
    return true;
}

bool QtVariantStreamReader::readNestedHash(QVariant &value, int depth)
{
    if (findKnownHash(value, depth))
        return true;
    const char *const begin = m_cursor.rest().data();
    QVariantHash hash;
    const bool ok = readMap(hash, depth);
    value = hash;
    const QByteArrayView bytes(begin, m_cursor.rest().data());
    if (ok && bytes.size() <= maxKnownHashSize) {
        m_hashes[m_oldestHash] = {bytes, depth, value};
        m_oldestHash = (m_oldestHash + 1) % m_hashes.size();
    }
    return ok;
}

bool QtVariantStreamReader::findKnownHash(QVariant &value, int depth)
{
    const QByteArrayView rest = m_cursor.rest();
    // One that was read less deep may hold more levels than are allowed here.
    const auto known =
        std::find_if(m_hashes.cbegin(), m_hashes.cend(), [&rest, depth](const Hash &hash) {
            return !hash.bytes.isEmpty() && depth <= hash.depth && rest.startsWith(hash.bytes);
        });
    if (known == m_hashes.cend() || !m_cursor.skip(static_cast<quint64>(known->bytes.size())))
        return false;
    value = known->value;
    return true;
}

template <typename Map> bool QtVariantStreamReader::readMap(Map &map, int depth)
{
    quint32 count = 0;
    if (depth > VhBodyLimits::maxDepth || !m_cursor.read(count)
        || !m_cursor.announce(count, minEntrySize))
        return false;
    if constexpr (requires { map.reserve(count); })
        map.reserve(count);
    for (; count > 0; --count) {
        m_cursor.begin(minEntrySize);
        QString key;
        QVariant value;
        if (!readKey(key) || !readVariant(value, depth))
            return false;
        map.insert(std::move(key), std::move(value));
    }
    return true;
}

bool QtVariantStreamReader::readStringList(QStringList &list)
{
    quint32 count = 0;
    if (!m_cursor.read(count) || !m_cursor.announce(count, minStringSize))
        return false;
    list.reserve(count);
    for (; count > 0; --count) {
        m_cursor.begin(minStringSize);
        if (!readString(list.emplace_back()))
            return false;
    }
    return true;
}

bool QtVariantStreamReader::readString(QString &text)
{
    QByteArrayView utf16;
    bool isNull = false;
    if (!readUtf16(utf16, isNull))
        return false;
    if (!isNull)
        text = textOf(utf16);
    return true;
}

bool QtVariantStreamReader::readKey(QString &key)
{
    QByteArrayView utf16;
    bool isNull = false;
    if (!readUtf16(utf16, isNull))
        return false;
    if (isNull)
        return true;
    auto &[known, older] = m_keys[placeOfKey(utf16) % m_keys.size()];
    if (known.text.isNull() || known.utf16 != utf16) {
        std::swap(known, older);
        if (known.text.isNull() || known.utf16 != utf16)
            known = {utf16, textOf(utf16)};
    }
    key = known.text;
    return true;
}

bool QtVariantStreamReader::readUtf16(QByteArrayView &utf16, bool &isNull)
{
    return readBytes(utf16, isNull) && utf16.size() % qsizetype(sizeof(char16_t)) == 0;
}

bool QtVariantStreamReader::readBytes(QByteArrayView &bytes, bool &isNull)
{
    quint32 length = 0;
    if (!m_cursor.read(length))
        return false;
    isNull = length == QtVariantStreamFormat::nullLength;
    return m_cursor.take(isNull ? 0 : length, bytes);
}

bool QtVariantStreamReader::readDateTime(QDateTime &dateTime)
{
    qint64 julianDay = 0;
    quint32 msecsOfDay = 0;
    qint8 timeSpec = 0;
    if (!m_cursor.read(julianDay) || !m_cursor.read(msecsOfDay) || !m_cursor.read(timeSpec))
        return false;
    const QDate date = QDate::fromJulianDay(julianDay);
    const QTime time = msecsOfDay == QtVariantStreamFormat::nullTime
        ? QTime()
        : QTime::fromMSecsSinceStartOfDay(static_cast<int>(msecsOfDay));
    qint32 offset = 0;
    QTimeZone zone;
    const char *const beginOfZone = m_cursor.rest().data();
    switch (timeSpec) {
    case Qt::LocalTime:
    case Qt::UTC:
        dateTime = QDateTime(date, time, static_cast<Qt::TimeSpec>(timeSpec));
        return true;
    case Qt::OffsetFromUTC:
        if (!m_cursor.read(offset))
            return false;
        dateTime = QDateTime(date, time, Qt::OffsetFromUTC, offset);
        return true;
    case Qt::TimeZone:
        if (!skipTimeZone() || !readTimeZone(beginOfZone, zone))
            return false;
        dateTime = QDateTime(date, time, zone);
        return true;
    default:
        return false;
    }
}

/// Each zone is looked up once: that takes some accesses to the file system, and many more where
/// there is none of that name.
bool QtVariantStreamReader::readTimeZone(const char *begin, QTimeZone &zone)
{
    const QByteArrayView bytes(begin, m_cursor.rest().data());
    if (const auto known = m_timeZones.constFind(bytes); known != m_timeZones.cend()) {
        zone = *known;
        return true;
    }
    if (m_timeZones.size() >= VhBodyLimits::maxTimeZones || !readByQt(begin, zone))
        return false;
    m_timeZones.insert(bytes, zone);
    return true;
}

/// Leaves what began at "begin", and was looked through, to QDataStream.
template <typename Value> bool QtVariantStreamReader::readByQt(const char *begin, Value &value)
{
    QDataStream stream(QByteArray::fromRawData(begin, m_cursor.rest().data() - begin));
    stream.setVersion(QtVariantStreamFormat::version);
    stream >> value;
    return stream.status() == QDataStream::Ok;
}

bool QtVariantStreamReader::skipOtherValue(quint32 type)
{
    switch (type) {
    case QMetaType::QByteArrayList:
        return skipByteArrayList();
    case QMetaType::QBitArray:
        return skipBitArray();
    default:
        const int size = fixedSize(type);
        return size >= 0 && m_cursor.skip(static_cast<quint64>(size));
    }
}

bool QtVariantStreamReader::skipBytes()
{
    QByteArrayView bytes;
    bool isNull = false;
    return readBytes(bytes, isNull);
}

bool QtVariantStreamReader::skipByteArrayList()
{
    quint32 count = 0;
    if (!m_cursor.read(count) || !m_cursor.announce(count, minStringSize))
        return false;
    for (; count > 0; --count) {
        m_cursor.begin(minStringSize);
        if (!skipBytes())
            return false;
    }
    return true;
}

bool QtVariantStreamReader::skipBitArray()
{
    constexpr quint64 bitsPerByte = 8;
    quint32 bits = 0;
    return m_cursor.read(bits) && m_cursor.skip((bits + bitsPerByte - 1) / bitsPerByte);
}

bool QtVariantStreamReader::skipTimeZone()
{
    QByteArrayView name;
    bool isNull = false;
    if (!readBytes(name, isNull) || !isTimeZoneName(name))
        return false;
    if (name != customTimeZone)
        return true;
    // Name, offset, display name, abbreviation, territory, comment.
    return readBytes(name, isNull) && isTimeZoneName(name) && m_cursor.skip(sizeof(qint32))
        && skipBytes() && skipBytes() && m_cursor.skip(sizeof(qint32)) && skipBytes();
}
