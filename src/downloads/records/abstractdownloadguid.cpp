#include "abstractdownloadguid.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &guid)
{
    fields.value(u"guidType"_qs, guid.guidType);
    fields.value(u"type"_qs, guid.type);
    fields.value(u"guid"_qs, guid.guid);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadGuid &guid)
{
    if (guid.guid.isEmpty())
        return {};
    VariantFieldsWriter fields;
    describe(fields, guid);
    return fields.takeHash();
}

AbstractDownloadGuid toDownloadGuid(const QVariantHash &hash)
{
    AbstractDownloadGuid guid;
    VariantFieldsReader fields(hash);
    describe(fields, guid);
    return guid;
}
