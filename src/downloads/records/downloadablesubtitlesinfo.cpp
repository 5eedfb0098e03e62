#include "downloadablesubtitlesinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &subtitles)
{
    fields.value(u"languageCode"_qs, subtitles.languageCode);
    fields.value(u"languageName"_qs, subtitles.languageName);
    fields.value(u"url"_qs, subtitles.url);
}

} // namespace

QVariant toVariant(const DownloadableSubtitlesInfo &subtitles)
{
    VariantFieldsWriter fields;
    describe(fields, subtitles);
    return fields.takeHash();
}

DownloadableSubtitlesInfo toDownloadableSubtitlesInfo(const QVariant &variant)
{
    DownloadableSubtitlesInfo subtitles;
    const QVariantHash hash = variant.toHash();
    VariantFieldsReader fields(hash);
    describe(fields, subtitles);
    return subtitles;
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
