#include "abstractfiledetails.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &details)
{
    fields.value(u"type"_qs, details.type);
    fields.value(u"contentType"_qs, details.contentType);
    fields.value(u"format"_qs, details.format);
    fields.value(u"width"_qs, details.width);
    fields.value(u"height"_qs, details.height);
    fields.value(u"bitrate"_qs, details.bitrate);
    fields.value(u"fps"_qs, details.fps);
    fields.value(u"duration"_qs, details.duration);
}

} // namespace

QVariantHash AbstractFileDetails::toVariantHash() const
{
    VariantFieldsWriter fields;
    describe(fields, *this);
    return fields.takeHash();
}

AbstractFileDetails AbstractFileDetails::fromVariantHash(const QVariantHash &hash)
{
    AbstractFileDetails details;
    VariantFieldsReader fields(hash);
    describe(fields, details);
    return details;
}
