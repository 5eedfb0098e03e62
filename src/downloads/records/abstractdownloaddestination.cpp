#include "abstractdownloaddestination.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto destinationFields = [](auto &fields) {
    fields.value(u"type"_qs, &AbstractDownloadDestination::type);
    fields.value(u"path"_qs, &AbstractDownloadDestination::path);
    fields.value(u"data"_qs, &AbstractDownloadDestination::data);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadDestination &destination)
{
    return encodedRecord(destination, destinationFields);
}

AbstractDownloadDestination toDownloadDestination(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadDestination>(hash, destinationFields);
}
