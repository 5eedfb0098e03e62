#include "abstractdownloadfileinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &file)
{
    fields.value(u"priority"_qs, file.priority);
    fields.value(
        u"sections"_qs, file.sections,
        [](const QList<AbstractDownloadSection> &sections) {
            return toVariantListWith(sections,
                                     [](const auto &section) { return section.toVariantHash(); });
        },
        [](const QVariant &variant) {
            return fromVariantHashesWith<AbstractDownloadSection>(
                variant.toList(), AbstractDownloadSection::fromVariantHash);
        });
    fields.value(u"writeOffset"_qs, file.writeOffset);
    fields.value(u"tmpPath"_qs, file.tmpPath);
    fields.value(u"flags"_qs, file.flags);
}

} // namespace

QVariantHash AbstractDownloadFileInfo::toVariantHash() const
{
    VariantFieldsWriter fields(AbstractFileInfo::toVariantHash());
    describe(fields, *this);
    return fields.takeHash();
}

AbstractDownloadFileInfo AbstractDownloadFileInfo::fromVariantHash(const QVariantHash &hash)
{
    AbstractDownloadFileInfo file;
    static_cast<AbstractFileInfo &>(file) = AbstractFileInfo::fromVariantHash(hash);
    VariantFieldsReader fields(hash);
    describe(fields, file);
    return file;
}

QVariantList toVariantList(const QList<AbstractDownloadFileInfo> &files)
{
    return toVariantListWith(files, [](const auto &file) { return file.toVariantHash(); });
}

QList<AbstractDownloadFileInfo> toDownloadFilesInfos(const QVariantList &list)
{
    return fromVariantHashesWith<AbstractDownloadFileInfo>(
        list, AbstractDownloadFileInfo::fromVariantHash);
}

QVariantHash filesInfosToHash(const QList<AbstractDownloadFileInfo> &files)
{
    return {{downloadFilesKey(), toVariantList(files)}};
}
