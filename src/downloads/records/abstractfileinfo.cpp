#include "abstractfileinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &file)
{
    fields.value(u"originType"_qs, file.originType);
    fields.record(u"details"_qs, file.details, AbstractFileDetails::fromVariantHash);
    fields.value(u"path"_qs, file.path);
    fields.value(u"size"_qs, file.size);
    fields.millisecondsIfValid(u"lastModified"_qs, file.lastModified);
}

} // namespace

QVariantHash AbstractFileInfo::toVariantHash() const
{
    VariantFieldsWriter fields;
    describe(fields, *this);
    return fields.takeHash();
}

AbstractFileInfo AbstractFileInfo::fromVariantHash(const QVariantHash &hash)
{
    AbstractFileInfo file;
    VariantFieldsReader fields(hash);
    describe(fields, file);
    return file;
}
