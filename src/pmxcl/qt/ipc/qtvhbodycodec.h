#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

/**
 * Encodes and decodes messages, which are maps of variants, in the two encodings of the link. Both
 * decoders are safe for untrusted bytes: time and memory are linear in the size of the body, and
 * only plain values are created.
 */
namespace QtVhBodyCodec {

/// QDataStream's format of a QHash<QString, QVariant>, version Qt_5_12. An empty map has no bytes.
QByteArray toDataStream(const QHash<QString, QVariant> &map);
/// The same in pieces, see QtEncodedVariantList.
QList<QByteArray> toDataStreamPieces(const QHash<QString, QVariant> &map);
/// Nothing if the body cannot be decoded, or not safely: see QtVariantStreamScanner.
std::optional<QHash<QString, QVariant>> fromDataStream(const QByteArray &body);

/// A CBOR map with text keys.
QByteArray toCbor(const QHash<QString, QVariant> &map);
/// Nothing if the body cannot be decoded, or not safely: see QtCborScanner; an empty map if it is
/// not a map. Tags are ignored.
std::optional<QHash<QString, QVariant>> fromCbor(const QByteArray &body);

} // namespace QtVhBodyCodec
