#include "abstractdownloadsection.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto sectionFields = [](auto &fields) {
    fields.value(u"offset"_qs, &AbstractDownloadSection::offset);
    fields.value(u"size"_qs, &AbstractDownloadSection::size);
    fields.value(u"done"_qs, &AbstractDownloadSection::done);
};

} // namespace

QVariantHash AbstractDownloadSection::toVariantHash() const
{
    return encodedRecord(*this, sectionFields);
}

AbstractDownloadSection AbstractDownloadSection::fromVariantHash(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadSection>(hash, sectionFields);
}
