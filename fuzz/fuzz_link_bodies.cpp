// The body of a message on the link, from an untrusted peer: the first byte chooses the encoding,
// the rest is the body. Data streams are scanned as far as QDataStream reads them, and written byte
// for byte as it does.

#include "qtvariantstreamscanner.h"
#include "qtvhbodycodec.h"
#include "require.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>

#include <cstddef>
#include <cstdint>

namespace {

void checkDataStream(const QByteArray &body, const QHash<QString, QVariant> &map)
{
    // The scanner walks as far as Qt reads: else its bounds would not hold.
    QDataStream reader(body);
    reader.setVersion(QDataStream::Qt_5_12);
    QHash<QString, QVariant> readByQt;
    reader >> readByQt;
    const qint64 end = reader.device()->pos();
    require(QtVariantStreamScanner::isSafe(QByteArrayView(body).first(end)));
    require(!QtVariantStreamScanner::isSafe(QByteArrayView(body).first(end - 1)));

    QByteArray writtenByQt;
    QDataStream writer(&writtenByQt, QIODevice::WriteOnly);
    writer.setVersion(QDataStream::Qt_5_12);
    writer << map;
    require(QtVhBodyCodec::toDataStream(map) == (map.isEmpty() ? QByteArray() : writtenByQt));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray body(reinterpret_cast<const char *>(data) + 1,
                          static_cast<qsizetype>(size) - 1);
    const bool useCbor = (data[0] & 1) != 0;
    if (useCbor) {
        if (const auto map = QtVhBodyCodec::fromCbor(body))
            require(QtVhBodyCodec::fromCbor(QtVhBodyCodec::toCbor(*map)).has_value());
    } else if (const auto map = QtVhBodyCodec::fromDataStream(body)) {
        checkDataStream(body, *map);
    }
    return 0;
}
