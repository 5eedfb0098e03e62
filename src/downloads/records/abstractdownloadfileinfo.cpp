#include "abstractdownloadfileinfo.h"

#include "abstractfileinfofields.h"
#include "streamfieldswriter.h"
#include "variantrecordcodec.h"

namespace {

constexpr auto downloadFileFields = [](auto &fields) {
    using File = AbstractDownloadFileInfo;
    abstractFileInfoFields(fields);
    fields.value(u"priority"_qs, &File::priority);
    fields.value(
        u"sections"_qs, &File::sections,
        [](const QList<AbstractDownloadSection> &sections) {
            return toVariantListWith(sections,
                                     [](const auto &section) { return section.toVariantHash(); });
        },
        [](const QVariant &variant) {
            return fromVariantHashesWith<AbstractDownloadSection>(
                variant.toList(), AbstractDownloadSection::fromVariantHash);
        });
    fields.value(u"writeOffset"_qs, &File::writeOffset);
    fields.value(u"tmpPath"_qs, &File::tmpPath);
    fields.value(u"flags"_qs, &File::flags);
};

} // namespace

QVariantHash AbstractDownloadFileInfo::toVariantHash() const
{
    return encodedRecord(*this, downloadFileFields);
}

AbstractDownloadFileInfo AbstractDownloadFileInfo::fromVariantHash(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadFileInfo>(hash, downloadFileFields);
}

QByteArrayView toStream(RecordsStreamContext &context, const AbstractDownloadFileInfo &file)
{
    return streamedRecord(context, file, downloadFileFields);
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
