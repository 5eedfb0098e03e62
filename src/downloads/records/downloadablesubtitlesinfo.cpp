#include "downloadablesubtitlesinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto subtitlesFields = [](auto &fields) {
    fields.value(u"languageCode"_qs, &DownloadableSubtitlesInfo::languageCode);
    fields.value(u"languageName"_qs, &DownloadableSubtitlesInfo::languageName);
    fields.value(u"url"_qs, &DownloadableSubtitlesInfo::url);
};

} // namespace

QVariant toVariant(const DownloadableSubtitlesInfo &subtitles)
{
    return encodedRecord(subtitles, subtitlesFields);
}

DownloadableSubtitlesInfo toDownloadableSubtitlesInfo(const QVariant &variant)
{
    return decodedRecord<DownloadableSubtitlesInfo>(variant.toHash(), subtitlesFields);
}

QVariant toVariant(const QList<DownloadableSubtitlesInfo> &subtitles)
{
    return toVariantListWith(subtitles, [](const auto &one) { return toVariant(one); });
}

QList<DownloadableSubtitlesInfo> toDownloadableSubtitlesInfos(const QVariant &variant)
{
    return fromVariantListWith<DownloadableSubtitlesInfo>(variant.toList(),
                                                          toDownloadableSubtitlesInfo);
}
