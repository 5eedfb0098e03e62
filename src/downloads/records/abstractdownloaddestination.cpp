#include "abstractdownloaddestination.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &destination)
{
    fields.value(u"type"_qs, destination.type);
    fields.value(u"path"_qs, destination.path);
    fields.value(u"data"_qs, destination.data);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadDestination &destination)
{
    VariantFieldsWriter fields;
    describe(fields, destination);
    return fields.takeHash();
}

AbstractDownloadDestination toDownloadDestination(const QVariantHash &hash)
{
    AbstractDownloadDestination destination;
    VariantFieldsReader fields(hash);
    describe(fields, destination);
    return destination;
}
