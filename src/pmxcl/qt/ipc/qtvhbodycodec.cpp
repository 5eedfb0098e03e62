#include "qtvhbodycodec.h"

#include "qtcborscanner.h"
#include "qtvariantstreamscanner.h"

#include <QCborMap>
#include <QCborValue>
#include <QDataStream>
#include <QIODevice>

namespace {
constexpr QDataStream::Version streamVersion = QDataStream::Qt_5_12;
}

QByteArray QtVhBodyCodec::toDataStream(const QHash<QString, QVariant> &map)
{
    QByteArray body;
    if (map.isEmpty())
        return body;
    QDataStream stream(&body, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream << map;
    return body;
}

std::optional<QHash<QString, QVariant>> QtVhBodyCodec::fromDataStream(const QByteArray &body)
{
    if (!QtVariantStreamScanner::isSafeHash(body))
        return std::nullopt;
    QHash<QString, QVariant> map;
    QDataStream stream(body);
    stream.setVersion(streamVersion);
    stream.startTransaction();
    stream >> map;
    if (!stream.commitTransaction())
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
    const QCborValue value = QCborValue::fromCbor(body, &error);
    if (error.error != QCborError::NoError)
        return std::nullopt;
    return value.toMap().toVariantHash();
}
