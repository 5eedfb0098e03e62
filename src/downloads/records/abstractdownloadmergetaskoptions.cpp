#include "abstractdownloadmergetaskoptions.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &taskOptions)
{
    fields.record(u"mo"_qs, taskOptions.mo, toDownloadMergeOptions);
    fields.value(u"dontMergeJustAddNew"_qs, taskOptions.dontMergeJustAddNew);
    fields.value(u"restart"_qs, taskOptions.restart);
    fields.value(u"start"_qs, taskOptions.start);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadMergeTaskOptions &taskOptions)
{
    VariantFieldsWriter fields;
    describe(fields, taskOptions);
    return fields.takeHash();
}

AbstractDownloadMergeTaskOptions toDownloadMergeTaskOptions(const QVariantHash &hash)
{
    AbstractDownloadMergeTaskOptions taskOptions;
    VariantFieldsReader fields(hash);
    describe(fields, taskOptions);
    return taskOptions;
}
