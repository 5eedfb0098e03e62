// The body of a message that came over the link, from anybody: the first byte chooses the encoding,
// the rest is the body. What is let in of a data stream must be what QDataStream reads.

#include "qtvhbodycodec.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QMap>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool ok)
{
    if (!ok)
        std::abort();
}

/// The same in every process: in the order of the keys, and without the flags of null variants.
QVariant normalized(const QVariant &value)
{
    const auto sorted = [](const auto &map) {
        QVariantMap result;
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            result.insert(it.key(), normalized(it.value()));
        return result;
    };
    switch (value.typeId()) {
    case QMetaType::QVariantHash:
        return sorted(value.toHash());
    case QMetaType::QVariantMap:
        return sorted(value.toMap());
    case QMetaType::QVariantList: {
        QVariantList result;
        const QVariantList list = value.toList();
        for (const QVariant &item : list)
            result += normalized(item);
        return result;
    }
    default:
        return QVariant(value.metaType(), value.constData());
    }
}

QByteArray writtenByQt(const QVariant &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_12);
    stream << normalized(value);
    return bytes;
}

void checkDataStream(const QByteArray &body, const QHash<QString, QVariant> &map)
{
    QDataStream stream(body);
    stream.setVersion(QDataStream::Qt_5_12);
    QHash<QString, QVariant> readByQt;
    stream >> readByQt;
    require(stream.status() == QDataStream::Ok);
    const QByteArray expected = writtenByQt(readByQt);
    require(writtenByQt(map) == expected);
    // And it can be sent on.
    const auto again = QtVhBodyCodec::fromDataStream(QtVhBodyCodec::toDataStream(map));
    require(map.isEmpty() || (again && writtenByQt(*again) == expected));
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
