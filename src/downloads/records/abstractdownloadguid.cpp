#include "abstractdownloadguid.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto guidFields = [](auto &fields) {
    fields.value(u"guidType"_qs, &AbstractDownloadGuid::guidType);
    fields.value(u"type"_qs, &AbstractDownloadGuid::type);
    fields.value(u"guid"_qs, &AbstractDownloadGuid::guid);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadGuid &guid)
{
    if (guid.guid.isEmpty())
        return {};
    return encodedRecord(guid, guidFields);
}

AbstractDownloadGuid toDownloadGuid(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadGuid>(hash, guidFields);
}
