#include "abstractdownloadmergetaskoptions.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto mergeTaskOptionsFields = [](auto &fields) {
    fields.record(u"mo"_qs, &AbstractDownloadMergeTaskOptions::mo, toDownloadMergeOptions);
    fields.value(u"dontMergeJustAddNew"_qs, &AbstractDownloadMergeTaskOptions::dontMergeJustAddNew);
    fields.value(u"restart"_qs, &AbstractDownloadMergeTaskOptions::restart);
    fields.value(u"start"_qs, &AbstractDownloadMergeTaskOptions::start);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadMergeTaskOptions &taskOptions)
{
    return encodedRecord(taskOptions, mergeTaskOptionsFields);
}

AbstractDownloadMergeTaskOptions toDownloadMergeTaskOptions(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadMergeTaskOptions>(hash, mergeTaskOptionsFields);
}
