#include "abstractfiledetails.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto fileDetailsFields = [](auto &fields) {
    fields.value(u"type"_qs, &AbstractFileDetails::type);
    fields.value(u"contentType"_qs, &AbstractFileDetails::contentType);
    fields.value(u"format"_qs, &AbstractFileDetails::format);
    fields.value(u"width"_qs, &AbstractFileDetails::width);
    fields.value(u"height"_qs, &AbstractFileDetails::height);
    fields.value(u"bitrate"_qs, &AbstractFileDetails::bitrate);
    fields.value(u"fps"_qs, &AbstractFileDetails::fps);
    fields.value(u"duration"_qs, &AbstractFileDetails::duration);
};

} // namespace

QVariantHash AbstractFileDetails::toVariantHash() const
{
    return encodedRecord(*this, fileDetailsFields);
}

AbstractFileDetails AbstractFileDetails::fromVariantHash(const QVariantHash &hash)
{
    return decodedRecord<AbstractFileDetails>(hash, fileDetailsFields);
}
