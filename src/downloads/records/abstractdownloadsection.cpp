#include "abstractdownloadsection.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &section)
{
    fields.value(u"offset"_qs, section.offset);
    fields.value(u"size"_qs, section.size);
    fields.value(u"done"_qs, section.done);
}

} // namespace

QVariantHash AbstractDownloadSection::toVariantHash() const
{
    VariantFieldsWriter fields;
    describe(fields, *this);
    return fields.takeHash();
}

AbstractDownloadSection AbstractDownloadSection::fromVariantHash(const QVariantHash &hash)
{
    AbstractDownloadSection section;
    VariantFieldsReader fields(hash);
    describe(fields, section);
    return section;
}
