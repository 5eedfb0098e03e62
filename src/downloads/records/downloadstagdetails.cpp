#include "downloadstagdetails.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto tagDetailsFields = [](auto &fields) {
    fields.value(u"defaultExtensions"_qs, &DownloadsTagDetails::defaultExtensions);
    fields.value(u"defaultDownloadFolder"_qs, &DownloadsTagDetails::defaultDownloadFolder);
};

} // namespace

QVariant toVariant(const DownloadsTagDetails &details)
{
    return encodedRecord(details, tagDetailsFields);
}

DownloadsTagDetails toDownloadsTagDetails(const QVariant &variant)
{
    return decodedRecord<DownloadsTagDetails>(variant.toHash(), tagDetailsFields);
}

QVariant toVariant(const QList<DownloadsTagDetails> &details)
{
    return toVariantListWith(details, [](const auto &one) { return toVariant(one); });
}
