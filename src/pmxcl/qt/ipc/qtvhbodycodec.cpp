#include "qtvhbodycodec.h"

#include "qtcborscanner.h"
#include "qtvariantstreamformat.h"
#include "qtvariantstreamscanner.h"
#include "qtvariantstreamwriter.h"

#include <QCborMap>
#include <QCborValue>
#include <QDataStream>

QByteArray QtVhBodyCodec::toDataStream(const QHash<QString, QVariant> &map)
{
    return map.isEmpty() ? QByteArray() : QtVariantStreamWriter::writeHash(map);
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
    return QCborValue(QCborMap::fromVariantHash(map)).toCbor();
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
