#include "abstractdownloadresourcedescription.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto descriptionFields = [](auto &fields) {
    fields.value(u"title"_qs, &AbstractDownloadResourceDescription::title);
    fields.value(u"filesTypes"_qs, &AbstractDownloadResourceDescription::filesTypes);
    fields.value(u"previewImageUrl"_qs, &AbstractDownloadResourceDescription::previewImageUrl);
    fields.value(u"mediaDurationHr"_qs, &AbstractDownloadResourceDescription::mediaDurationHr);
    fields.value(u"ageHr"_qs, &AbstractDownloadResourceDescription::ageHr);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadResourceDescription &description)
{
    return encodedRecord(description, descriptionFields);
}

AbstractDownloadResourceDescription toDownloadResourceDesc(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadResourceDescription>(hash, descriptionFields);
}
