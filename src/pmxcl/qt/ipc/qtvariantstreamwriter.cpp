#include "qtvariantstreamwriter.h"

#include "qtvariantstreamformat.h"

#include <QDataStream>
#include <QIODevice>
#include <QMap>
#include <QMetaType>
#include <QStringList>
#include <QtEndian>

#include <bit>

namespace {

/// Room for a usual message, so that it does not grow piece by piece.
constexpr qsizetype usualSize = 2048;

template <typename T> const T &content(const QVariant &value)
{
    return *static_cast<const T *>(value.constData());
}

} // namespace

QByteArray QtVariantStreamWriter::writeHash(const QHash<QString, QVariant> &hash)
{
    QtVariantStreamWriter writer;
    writer.m_bytes.reserve(usualSize);
    writer.writeMap(hash);
    return writer.m_bytes;
}

void QtVariantStreamWriter::writeVariant(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        writeHead(value);
        write<quint8>(content<bool>(value) ? 1 : 0);
        break;
    case QMetaType::Int:
        writeHead(value);
        write(content<int>(value));
        break;
    case QMetaType::UInt:
        writeHead(value);
        write(content<uint>(value));
        break;
    case QMetaType::LongLong:
        writeHead(value);
        write(content<qlonglong>(value));
        break;
    case QMetaType::ULongLong:
        writeHead(value);
        write(content<qulonglong>(value));
        break;
    case QMetaType::Double:
        writeHead(value);
        write(std::bit_cast<quint64>(content<double>(value)));
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
        write(static_cast<quint32>(content<QVariantList>(value).size()));
        for (const QVariant &item : content<QVariantList>(value))
            writeVariant(item);
        break;
    case QMetaType::QVariantMap:
        writeHead(value);
        writeMap(content<QVariantMap>(value));
        break;
    case QMetaType::QVariantHash:
        writeHead(value);
        writeMap(content<QVariantHash>(value));
        break;
    default:
        writeByQt(value);
    }
}

void QtVariantStreamWriter::writeByQt(const QVariant &value)
{
    QDataStream stream(&m_bytes, QIODevice::Append);
    stream.setVersion(QtVariantStreamFormat::version);
    stream << value;
}

void QtVariantStreamWriter::writeHead(const QVariant &value)
{
    write(static_cast<quint32>(value.typeId()));
    write<quint8>(value.isNull() ? 1 : 0);
}

template <typename Map> void QtVariantStreamWriter::writeMap(const Map &map)
{
    write(static_cast<quint32>(map.size()));
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        writeString(it.key());
        writeVariant(it.value());
    }
}

void QtVariantStreamWriter::writeString(const QString &text)
{
    if (text.isNull()) {
        write(QtVariantStreamFormat::nullLength);
        return;
    }
    const qsizetype size = text.size() * qsizetype(sizeof(char16_t));
    write(static_cast<quint32>(size));
    const qsizetype at = m_bytes.size();
    m_bytes.resize(at + size);
    qToBigEndian<char16_t>(text.utf16(), text.size(), m_bytes.data() + at);
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
    const Number bigEndian = qToBigEndian(number);
    m_bytes.append(reinterpret_cast<const char *>(&bigEndian), sizeof(bigEndian));
}
