#include "abstractdownloadmergeoptions.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &mergeOptions)
{
    fields.value(u"options"_qs, mergeOptions.options);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadMergeOptions &mergeOptions)
{
    VariantFieldsWriter fields;
    describe(fields, mergeOptions);
    return fields.takeHash();
}

AbstractDownloadMergeOptions toDownloadMergeOptions(const QVariantHash &hash)
{
    AbstractDownloadMergeOptions mergeOptions;
    VariantFieldsReader fields(hash);
    describe(fields, mergeOptions);
    return mergeOptions;
}

QList<AbstractDownloadOption> toDownloadOptions(const QVariantList &list)
{
    QList<AbstractDownloadOption> options;
    readVariantValue(list, options);
    return options;
}
