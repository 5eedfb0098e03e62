#include "abstractdownloadpreviewinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &preview)
{
    fields.value(u"smallPreviewId"_qs, preview.smallPreviewId);
    fields.value(u"largePreviewId"_qs, preview.largePreviewId);
    fields.value(u"flags"_qs, preview.flags);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadPreviewInfo &preview)
{
    VariantFieldsWriter fields;
    describe(fields, preview);
    return fields.takeHash();
}

AbstractDownloadPreviewInfo toDownloadPreviewInfo(const QVariantHash &hash)
{
    AbstractDownloadPreviewInfo preview;
    VariantFieldsReader fields(hash);
    describe(fields, preview);
    return preview;
}
