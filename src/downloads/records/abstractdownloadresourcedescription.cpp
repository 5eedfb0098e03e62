#include "abstractdownloadresourcedescription.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &description)
{
    fields.value(u"title"_qs, description.title);
    fields.value(u"filesTypes"_qs, description.filesTypes);
    fields.value(u"previewImageUrl"_qs, description.previewImageUrl);
    fields.value(u"mediaDurationHr"_qs, description.mediaDurationHr);
    fields.value(u"ageHr"_qs, description.ageHr);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadResourceDescription &description)
{
    VariantFieldsWriter fields;
    describe(fields, description);
    return fields.takeHash();
}

AbstractDownloadResourceDescription toDownloadResourceDesc(const QVariantHash &hash)
{
    AbstractDownloadResourceDescription description;
    VariantFieldsReader fields(hash);
    describe(fields, description);
    return description;
}
