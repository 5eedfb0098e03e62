#include "abstractdownloadmergetaskoptions.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto mergeTaskOptionsFields = [](auto &fields) {
    using Options = AbstractDownloadMergeTaskOptions;
    fields.record(u"mo"_qs, &Options::mo, toDownloadMergeOptions);
    fields.value(u"dontMergeJustAddNew"_qs, &Options::dontMergeJustAddNew);
    fields.value(u"restart"_qs, &Options::restart);
    fields.value(u"start"_qs, &Options::start);
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
