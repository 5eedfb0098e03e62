#include "abstractdownloadresourcedescription.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto descriptionFields = [](auto &fields) {
    using Description = AbstractDownloadResourceDescription;
    fields.value(u"title"_qs, &Description::title);
    fields.value(u"filesTypes"_qs, &Description::filesTypes);
    fields.value(u"previewImageUrl"_qs, &Description::previewImageUrl);
    fields.value(u"mediaDurationHr"_qs, &Description::mediaDurationHr);
    fields.value(u"ageHr"_qs, &Description::ageHr);
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
