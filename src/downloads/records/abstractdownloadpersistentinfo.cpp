#include "abstractdownloadpersistentinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

constexpr auto encodeFiles = [](const QList<AbstractDownloadFileInfo> &files) {
    return toVariantList(files);
};
constexpr auto decodeFiles = [](const QVariant &variant) {
    return toDownloadFilesInfos(variant.toList());
};
constexpr auto encodeRecords = [](const auto &records) { return toVariant(records); };

template <typename Fields> void describe(Fields &fields, auto &info)
{
    fields.value(u"originatorsNamesChain"_qs, info.originatorsNamesChain);
    fields.valueIfPresent(u"uuid"_qs, info.uuid);
    fields.record(u"guid"_qs, info.guid, toDownloadGuid);
    fields.value(u"moduleUid"_qs, info.moduleUid);
    fields.value(u"createdBy"_qs, info.createdBy);
    fields.value(u"flags"_qs, info.flags);
    fields.value(u"parentDownloadId"_qs, info.parentDownloadId);
    fields.value(u"childrenDownloadsIds"_qs, info.childrenDownloadsIds);
    fields.recordIfPresent(u"desc"_qs, info.desc, toDownloadResourceDesc);
    fields.record(u"source"_qs, info.source, toDownloadSourceInfo);
    fields.record(u"destination"_qs, info.destination, toDownloadDestination);
    fields.value(u"mirrors"_qs, info.mirrors, encodeRecords, toDownloadMirrors);
    fields.value(u"title"_qs, info.title);
    fields.value(u"creationTime"_qs, info.creationTime);
    fields.value(u"finishedTime"_qs, info.finishedTime);
    fields.value(u"resumeData"_qs, info.resumeData);
    fields.record(u"lastError"_qs, info.lastError, abstractErrorFromContainer<QVariantHash>);
    fields.value(u"lastErrorTime"_qs, info.lastErrorTime);
    fields.value(u"resumeSupport"_qs, info.resumeSupport);
    fields.value(downloadFilesKey(), info.files, encodeFiles, decodeFiles);
    fields.value(u"allFilesType"_qs, info.allFilesType);
    fields.valueUnlessZero(u"tbu2c"_qs, info.tbu2c);
    fields.valueIfPresent(u"priority"_qs, info.priority);
    fields.value(u"supportedOptions"_qs, info.supportedOptions);
    fields.value(u"userAgent"_qs, info.userAgent);
    fields.value(u"preferredFileTitle"_qs, info.preferredFileTitle);
    fields.value(u"subtitles"_qs, info.subtitles, encodeRecords, toDownloadableSubtitlesInfos);
    fields.numberOr(u"launchableFileIndex"_qs, info.launchableFileIndex, -1);
    fields.value(u"existingFileReaction"_qs, info.existingFileReaction);
    fields.numberOr(u"order"_qs, info.order, -1);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadPersistentInfo &info)
{
    VariantFieldsWriter fields;
    describe(fields, info);
    return fields.takeHash();
}

AbstractDownloadPersistentInfo toDownloadInfo(const QVariantHash &hash)
{
    AbstractDownloadPersistentInfo info;
    VariantFieldsReader fields(hash);
    describe(fields, info);
    return info;
}
