#include "abstractdownloadmergeoptions.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto mergeOptionsFields = [](auto &fields) {
    fields.value(u"options"_qs, &AbstractDownloadMergeOptions::options);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadMergeOptions &mergeOptions)
{
    return encodedRecord(mergeOptions, mergeOptionsFields);
}

AbstractDownloadMergeOptions toDownloadMergeOptions(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadMergeOptions>(hash, mergeOptionsFields);
}

QList<AbstractDownloadOption> toDownloadOptions(const QVariantList &list)
{
    QList<AbstractDownloadOption> options;
    readVariantValue(list, options);
    return options;
}
