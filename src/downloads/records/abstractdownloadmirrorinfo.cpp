#include "abstractdownloadmirrorinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto recordFields = [](auto &fields) {
    fields.record(u"source"_qs, &AbstractDownloadMirrorInfo::source, toDownloadSourceInfo);
};

} // namespace

QVariant toVariant(const AbstractDownloadMirrorInfo &mirror)
{
    return encodedRecord(mirror, recordFields);
}

AbstractDownloadMirrorInfo toDownloadMirror(const QVariant &variant)
{
    return decodedRecord<AbstractDownloadMirrorInfo>(variant.toHash(), recordFields);
}

QVariant toVariant(const QList<AbstractDownloadMirrorInfo> &mirrors)
{
    return toVariantListWith(mirrors, [](const auto &mirror) { return toVariant(mirror); });
}

QList<AbstractDownloadMirrorInfo> toDownloadMirrors(const QVariant &variant)
{
    return fromVariantListWith<AbstractDownloadMirrorInfo>(variant.toList(), toDownloadMirror);
}
