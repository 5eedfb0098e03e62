#include "downloadstagdetails.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &details)
{
    fields.value(u"defaultExtensions"_qs, details.defaultExtensions);
    fields.value(u"defaultDownloadFolder"_qs, details.defaultDownloadFolder);
}

} // namespace

QVariant toVariant(const DownloadsTagDetails &details)
{
    VariantFieldsWriter fields;
    describe(fields, details);
    return fields.takeHash();
}

DownloadsTagDetails toDownloadsTagDetails(const QVariant &variant)
{
    DownloadsTagDetails details;
    const QVariantHash hash = variant.toHash();
    VariantFieldsReader fields(hash);
    describe(fields, details);
    return details;
}

QVariant toVariant(const QList<DownloadsTagDetails> &details)
{
    return toVariantListWith(details, [](const auto &one) { return toVariant(one); });
}
