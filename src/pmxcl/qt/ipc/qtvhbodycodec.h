#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

/**
 * The bytes of a message that is a map of variants, in the two encodings of the link. Both decoders
 * take bytes from anybody: time and memory follow the size of the body, and nothing is made but
 * plain values.
 */
namespace QtVhBodyCodec {

/// As QDataStream writes a QHash<QString, QVariant>, version Qt_5_12. An empty map has no bytes.
QByteArray toDataStream(const QHash<QString, QVariant> &map);
/// The same in pieces, see QtEncodedVariantList.
QList<QByteArray> toDataStreamPieces(const QHash<QString, QVariant> &map);
/// Nothing when the body cannot be decoded or is not safe to read, see QtVariantStreamScanner.
std::optional<QHash<QString, QVariant>> fromDataStream(const QByteArray &body);

/// A CBOR map with texts for keys.
QByteArray toCbor(const QHash<QString, QVariant> &map);
/// Nothing when the body is not CBOR or is not safe to read, see QtCborScanner; an empty map when
/// it is something else than a map. Tags do not count.
std::optional<QHash<QString, QVariant>> fromCbor(const QByteArray &body);

} // namespace QtVhBodyCodec
