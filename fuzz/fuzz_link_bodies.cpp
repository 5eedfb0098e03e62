// The body of a message on the link, from an untrusted peer: the first byte selects the encoding,
// the rest is the body. The scanner must consume as many bytes as QDataStream, and the writer must
// produce the same bytes.

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
    // The scanner must consume as many bytes as Qt, or its limits would not apply to the rest.
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
