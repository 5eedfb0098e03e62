#include "qtvhbodycodec.h"

#include "qtcborscanner.h"
#include "qtvariantstreamreader.h"
#include "qtvariantstreamwriter.h"

#include <QCborMap>
#include <QCborValue>

QByteArray QtVhBodyCodec::toDataStream(const QHash<QString, QVariant> &map)
{
    return map.isEmpty() ? QByteArray() : QtVariantStreamWriter::writeHash(map);
}

std::optional<QHash<QString, QVariant>> QtVhBodyCodec::fromDataStream(const QByteArray &body)
{
    return QtVariantStreamReader::readHash(body);
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
