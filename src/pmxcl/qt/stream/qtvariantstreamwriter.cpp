#include "qtvariantstreamwriter.h"

#include "qtencodedvariantlist.h"
#include "qtvariantstreamformat.h"

#include <QByteArrayList>
#include <QDataStream>
#include <QDateTime>
#include <QIODevice>
#include <QMap>
#include <QMetaType>
#include <QStringList>
#include <QUrl>
#include <QUuid>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <utility>

namespace {

/// Initial capacity: enough for a usual message, to avoid reallocations.
constexpr qsizetype usualSize = 2048;

/// The type and the null flag of a variant.
constexpr qsizetype headSize = sizeof(quint32) + sizeof(quint8);

/// After so many items of a list, memory for the rest is reserved, up to so many bytes. Otherwise a
/// message of megabytes, growing by doubling, would be copied as a whole again and again.
constexpr qsizetype sampleItems = 16;
constexpr qsizetype maxReserve = qsizetype{64} * 1024 * 1024;

template <typename T> const T &content(const QVariant &value)
{
    return *static_cast<const T *>(value.constData());
}

} // namespace

QByteArray QtVariantStreamWriter::writeHash(const QHash<QString, QVariant> &hash)
{
    const QList<QByteArray> pieces = writeHashInPieces(hash);
    return pieces.size() == 1 ? pieces.constFirst() : QByteArrayList(pieces).join();
}

QList<QByteArray> QtVariantStreamWriter::writeHashInPieces(const QHash<QString, QVariant> &hash)
{
    QtVariantStreamWriter writer;
    writer.m_bytes.reserve(usualSize);
    writer.writeMap(hash);
    writer.m_pieces.append(writer.m_bytes);
    return writer.m_pieces;
}

void QtVariantStreamWriter::clear()
{
    m_bytes.resize(0);
    m_bytes.reserve(usualSize);
    m_pieces.clear();
    if (std::exchange(m_hasWrittenHashes, false))
        m_writtenHashes.fill({});
}

void QtVariantStreamWriter::writeHashHead() { writeHead(QMetaType::QVariantHash, false); }

void QtVariantStreamWriter::writeListHead() { writeHead(QMetaType::QVariantList, false); }

void QtVariantStreamWriter::writeCount(quint32 count) { write(count); }

void QtVariantStreamWriter::writeVariant(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        writeNumber(value, static_cast<quint8>(content<bool>(value) ? 1 : 0));
        break;
    case QMetaType::Int:
        writeNumber(value, content<int>(value));
        break;
    case QMetaType::UInt:
        writeNumber(value, content<uint>(value));
        break;
    case QMetaType::LongLong:
        writeNumber(value, content<qlonglong>(value));
        break;
    case QMetaType::ULongLong:
        writeNumber(value, content<qulonglong>(value));
        break;
    case QMetaType::Double:
        writeNumber(value, std::bit_cast<quint64>(content<double>(value)));
        break;
    case QMetaType::QString:
        writeHead(value);
        writeString(content<QString>(value));
        break;
    case QMetaType::QByteArray:
        writeHead(value);
        writeBytes(content<QByteArray>(value));
        break;
    case QMetaType::QStringList:
        writeHead(value);
        write(static_cast<quint32>(content<QStringList>(value).size()));
        for (const QString &text : content<QStringList>(value))
            writeString(text);
        break;
    case QMetaType::QVariantList:
        writeHead(value);
        writeList(content<QVariantList>(value));
        break;
    case QMetaType::QVariantMap:
        writeHead(value);
        writeMap(content<QVariantMap>(value));
        break;
    case QMetaType::QVariantHash:
        writeHead(value);
        writeNestedHash(content<QVariantHash>(value));
        break;
    case QMetaType::QUrl:
        writeHead(value);
        writeBytes(content<QUrl>(value).isValid() ? content<QUrl>(value).toEncoded()
                                                  : QByteArray());
        break;
    case QMetaType::QUuid:
        writeHead(value);
        m_bytes += content<QUuid>(value).toRfc4122();
        break;
    case QMetaType::QDateTime:
        writeDateTime(value);
        break;
    default:
        if (value.typeId() == qMetaTypeId<QtEncodedVariantList>())
            writeEncoded(content<QtEncodedVariantList>(value));
        else
            writeByQt(value);
    }
}

void QtVariantStreamWriter::writeEncoded(const QtEncodedVariantList &list)
{
    writeListHead();
    writeCount(static_cast<quint32>(list.count()));
    m_pieces.append(std::exchange(m_bytes, {}));
    m_pieces.append(list.pieces());
    // They are in the piece that has ended.
    m_writtenHashes.fill({});
}

void QtVariantStreamWriter::writeDateTime(const QVariant &value)
{
    const auto &dateTime = content<QDateTime>(value);
    const Qt::TimeSpec timeSpec = dateTime.timeSpec();
    if (timeSpec != Qt::LocalTime && timeSpec != Qt::UTC) {
        writeByQt(value);
        return;
    }
    writeHead(value);
    const QTime time = dateTime.time();
    write(dateTime.date().toJulianDay());
    write(time.isNull() ? QtVariantStreamFormat::nullTime
                        : static_cast<quint32>(time.msecsSinceStartOfDay()));
    write(static_cast<qint8>(timeSpec));
}

void QtVariantStreamWriter::writeByQt(const QVariant &value)
{
    QDataStream stream(&m_bytes, QIODevice::Append);
    stream.setVersion(QtVariantStreamFormat::version);
    stream << value;
}

void QtVariantStreamWriter::writeHead(const QVariant &value)
{
    writeHead(value.typeId(), value.isNull());
}

void QtVariantStreamWriter::writeHead(int typeId, bool isNull)
{
    char *const at = append(headSize);
    qToBigEndian(static_cast<quint32>(typeId), at);
    at[sizeof(quint32)] = isNull ? 1 : 0;
}

template <typename Number>
void QtVariantStreamWriter::writeNumber(const QVariant &value, Number number)
{
    writeHead(value);
    write(number);
}

void QtVariantStreamWriter::writeList(const QVariantList &list)
{
    const qsizetype begin = m_bytes.size();
    write(static_cast<quint32>(list.size()));
    qsizetype written = 0;
    for (const QVariant &item : list) {
        writeVariant(item);
        if (++written == sampleItems)
            reserveForItems(m_bytes.size() - begin, list.size() - written);
    }
}

/// The items of a long list are alike: the size of the first ones predicts that of the others.
void QtVariantStreamWriter::reserveForItems(qsizetype sampleSize, qsizetype moreItems)
{
    const qsizetype itemSize = (sampleSize + sampleSize / 8) / sampleItems;
    const qsizetype more = std::min(moreItems, maxReserve / itemSize) * itemSize;
    if (const qsizetype wanted = m_bytes.size() + more; wanted > 2 * m_bytes.capacity())
        m_bytes.reserve(wanted);
}

template <typename Map> void QtVariantStreamWriter::writeMap(const Map &map)
{
    write(static_cast<quint32>(map.size()));
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        writeString(it.key());
        writeVariant(it.value());
    }
}

void QtVariantStreamWriter::writeNestedHash(const QVariantHash &hash)
{
    const auto known = std::find_if(m_writtenHashes.cbegin(), m_writtenHashes.cend(),
                                    [&hash](const WrittenHash &written) {
                                        return written.size > 0 && written.hash.isSharedWith(hash);
                                    });
    if (known != m_writtenHashes.cend()) {
        char *const at = append(known->size);
        std::copy_n(m_bytes.constData() + known->begin, known->size, at);
        return;
    }
    const qsizetype begin = m_bytes.size();
    writeMap(hash);
    if (hash.isDetached())
        return;
    m_writtenHashes[m_oldestHash] = {hash, begin, m_bytes.size() - begin};
    m_hasWrittenHashes = true;
    m_oldestHash = (m_oldestHash + 1) % m_writtenHashes.size();
}

void QtVariantStreamWriter::writeString(const QString &text)
{
    if (text.isNull()) {
        write(QtVariantStreamFormat::nullLength);
        return;
    }
    const qsizetype size = text.size() * qsizetype(sizeof(char16_t));
    char *const at = append(qsizetype(sizeof(quint32)) + size);
    qToBigEndian(static_cast<quint32>(size), at);
    // Not utf16(), which copies every string literal.
    qToBigEndian<char16_t>(text.constData(), text.size(), at + sizeof(quint32));
}

void QtVariantStreamWriter::writeBytes(const QByteArray &bytes)
{
    if (bytes.isNull()) {
        write(QtVariantStreamFormat::nullLength);
        return;
    }
    write(static_cast<quint32>(bytes.size()));
    m_bytes += bytes;
}

template <typename Number> void QtVariantStreamWriter::write(Number number)
{
    qToBigEndian(number, append(sizeof(number)));
}

char *QtVariantStreamWriter::append(qsizetype size)
{
    const qsizetype at = m_bytes.size();
    m_bytes.resize(at + size);
    return m_bytes.data() + at;
}
