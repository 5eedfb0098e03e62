#include "qtvhbodycodec.h"

#include "qtcborscanner.h"
#include "qtencodedvariantlist.h"
#include "qtvariantstreamformat.h"
#include "qtvariantstreamscanner.h"
#include "qtvariantstreamwriter.h"

#include <QCborMap>
#include <QCborValue>
#include <QDataStream>

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
    if (!QtVariantStreamScanner::isSafe(body))
        return std::nullopt;
    QDataStream stream(body);
    stream.setVersion(QtVariantStreamFormat::version);
    QHash<QString, QVariant> map;
    stream >> map;
    if (stream.status() != QDataStream::Ok)
        return std::nullopt;
    return map;
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
