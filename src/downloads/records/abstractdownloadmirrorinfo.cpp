#include "abstractdownloadmirrorinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &mirror)
{
    fields.record(u"source"_qs, mirror.source, toDownloadSourceInfo);
}

} // namespace

QVariant toVariant(const AbstractDownloadMirrorInfo &mirror)
{
    VariantFieldsWriter fields;
    describe(fields, mirror);
    return fields.takeHash();
}

AbstractDownloadMirrorInfo toDownloadMirror(const QVariant &variant)
{
    AbstractDownloadMirrorInfo mirror;
    const QVariantHash hash = variant.toHash();
    VariantFieldsReader fields(hash);
    describe(fields, mirror);
    return mirror;
}

QVariant toVariant(const QList<AbstractDownloadMirrorInfo> &mirrors)
{
    return toVariantListWith(mirrors, [](const auto &mirror) { return toVariant(mirror); });
}

QList<AbstractDownloadMirrorInfo> toDownloadMirrors(const QVariant &variant)
{
    return fromVariantListWith<AbstractDownloadMirrorInfo>(variant.toList(), toDownloadMirror);
}
