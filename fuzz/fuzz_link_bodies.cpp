// The body of a message that came over the link, from anybody: the first byte chooses the encoding,
// the rest is the body.

#include "qtvhbodycodec.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool ok)
{
    if (!ok)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray body(reinterpret_cast<const char *>(data) + 1,
                          static_cast<qsizetype>(size) - 1);
    const bool useCbor = (data[0] & 1) != 0;
    const auto map = useCbor ? QtVhBodyCodec::fromCbor(body) : QtVhBodyCodec::fromDataStream(body);
    // What was let in can be sent on.
    if (map && useCbor)
        require(QtVhBodyCodec::fromCbor(QtVhBodyCodec::toCbor(*map)).has_value());
    else if (map && !map->isEmpty())
        require(QtVhBodyCodec::fromDataStream(QtVhBodyCodec::toDataStream(*map)).has_value());
    return 0;
}
