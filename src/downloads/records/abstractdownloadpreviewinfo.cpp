#include "abstractdownloadpreviewinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto previewFields = [](auto &fields) {
    fields.value(u"smallPreviewId"_qs, &AbstractDownloadPreviewInfo::smallPreviewId);
    fields.value(u"largePreviewId"_qs, &AbstractDownloadPreviewInfo::largePreviewId);
    fields.value(u"flags"_qs, &AbstractDownloadPreviewInfo::flags);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadPreviewInfo &preview)
{
    return encodedRecord(preview, previewFields);
}

AbstractDownloadPreviewInfo toDownloadPreviewInfo(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadPreviewInfo>(hash, previewFields);
}
