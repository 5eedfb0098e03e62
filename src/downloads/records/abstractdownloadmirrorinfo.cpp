#include "abstractdownloadmirrorinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto mirrorFields = [](auto &fields) {
    fields.record(u"source"_qs, &AbstractDownloadMirrorInfo::source, toDownloadSourceInfo);
};

} // namespace

QVariant toVariant(const AbstractDownloadMirrorInfo &mirror)
{
    return encodedRecord(mirror, mirrorFields);
}

AbstractDownloadMirrorInfo toDownloadMirror(const QVariant &variant)
{
    return decodedRecord<AbstractDownloadMirrorInfo>(variant.toHash(), mirrorFields);
}

QVariant toVariant(const QList<AbstractDownloadMirrorInfo> &mirrors)
{
    return toVariantListWith(mirrors, [](const auto &mirror) { return toVariant(mirror); });
}

QList<AbstractDownloadMirrorInfo> toDownloadMirrors(const QVariant &variant)
{
    return fromVariantListWith<AbstractDownloadMirrorInfo>(variant.toList(), toDownloadMirror);
}
