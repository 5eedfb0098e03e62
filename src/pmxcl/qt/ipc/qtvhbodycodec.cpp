#include "qtvhbodycodec.h"

#include "qtcborscanner.h"
#include "qtencodedvariantlist.h"
#include "qtscancursor.h"
#include "qtvariantstreamformat.h"
#include "qtvariantstreamscanner.h"
#include "qtvariantstreamwriter.h"

#include <QCborMap>
#include <QCborValue>
#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

namespace {

/// CBOR has only lists of values.
QVariant withoutEncodedLists(const QVariant &value)
{
    if (value.typeId() == qMetaTypeId<QtEncodedVariantList>())
        return value.toList();
    if (value.typeId() != QMetaType::QVariantHash)
        return value;
    QVariantHash hash = value.toHash();
    for (QVariant &member : hash)
        member = withoutEncodedLists(member);
    return hash;
}

/// Reads a map that is safe to read as QDataStream reads it, which passes every number and every
/// length through a device. What is more than a number or a text is left to QDataStream.
class MapReader {
public:
    explicit MapReader(QByteArrayView body) : m_cursor(body) { }

    std::optional<QHash<QString, QVariant>> read()
    {
        QHash<QString, QVariant> map;
        quint32 count = 0;
        if (!m_cursor.read(count))
            return std::nullopt;
        for (; count > 0; --count) {
            QString key;
            QVariant value;
            if (!read(key) || !read(value))
                return std::nullopt;
            map.insert(key, value);
        }
        return map;
    }

private:
    bool read(QString &text)
    {
        quint32 length = 0;
        QByteArrayView utf16;
        if (!m_cursor.read(length))
            return false;
        if (length == QtVariantStreamFormat::nullLength)
            return true;
        if (!m_cursor.take(length, utf16))
            return false;
        text = QString(utf16.size() / qsizetype(sizeof(char16_t)), Qt::Uninitialized);
        if (!text.isEmpty())
            qFromBigEndian<char16_t>(utf16.data(), text.size(), text.data());
        return true;
    }

    bool read(QVariant &variant)
    {
        const QByteArrayView whole = m_cursor.rest();
        quint32 type = 0;
        quint8 isNull = 0;
        if (!m_cursor.read(type) || !m_cursor.read(isNull))
            return false;
        if (isNull != 0)
            return readByQt(variant, whole);
        switch (type) {
        case QMetaType::Bool: {
            quint8 value = 0;
            return m_cursor.read(value) && assign(variant, value != 0);
        }
        case QMetaType::Int:
            return readNumber<int>(variant);
        case QMetaType::UInt:
            return readNumber<uint>(variant);
        case QMetaType::LongLong:
            return readNumber<qlonglong>(variant);
        case QMetaType::ULongLong:
            return readNumber<qulonglong>(variant);
        case QMetaType::QString: {
            QString text;
            return read(text) && assign(variant, text);
        }
        default:
            return readByQt(variant, whole);
        }
    }

    template <typename Number> bool readNumber(QVariant &variant)
    {
        Number number{};
        return m_cursor.read(number) && assign(variant, number);
    }

    bool readByQt(QVariant &variant, QByteArrayView whole)
    {
        QDataStream stream(QByteArray::fromRawData(whole.data(), whole.size()));
        stream.setVersion(QtVariantStreamFormat::version);
        stream >> variant;
        m_cursor = QtScanCursor(whole.sliced(stream.device()->pos()));
        return stream.status() == QDataStream::Ok;
    }

    template <typename T> static bool assign(QVariant &variant, const T &value)
    {
        variant = value;
        return true;
    }

    QtScanCursor m_cursor;
};

} // namespace

QByteArray QtVhBodyCodec::toDataStream(const QHash<QString, QVariant> &map)
{
    return map.isEmpty() ? QByteArray() : QtVariantStreamWriter::writeHash(map);
}

QList<QByteArray> QtVhBodyCodec::toDataStreamPieces(const QHash<QString, QVariant> &map)
{
    return map.isEmpty() ? QList<QByteArray>() : QtVariantStreamWriter::writeHashInPieces(map);
}

std::optional<QHash<QString, QVariant>> QtVhBodyCodec::fromDataStream(const QByteArray &body)
{
    return QtVariantStreamScanner::isSafe(body) ? MapReader(body).read() : std::nullopt;
}

QByteArray QtVhBodyCodec::toCbor(const QHash<QString, QVariant> &map)
{
    return QCborValue(QCborMap::fromVariantHash(withoutEncodedLists(map).toHash())).toCbor();
}

std::optional<QHash<QString, QVariant>> QtVhBodyCodec::fromCbor(const QByteArray &body)
{
    if (!QtCborScanner::isSafe(body))
        return std::nullopt;
    QCborParserError error;
    QCborValue value = QCborValue::fromCbor(body, &error);
    if (error.error != QCborError::NoError)
        return std::nullopt;
    while (value.isTag())
        value = value.taggedValue();
    return value.toMap().toVariantHash();
}
