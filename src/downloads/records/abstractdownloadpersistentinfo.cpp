#include "abstractdownloadpersistentinfo.h"

#include "streamfieldswriter.h"
#include "variantrecordcodec.h"

namespace {

constexpr auto encodeFiles = [](const QList<AbstractDownloadFileInfo> &files) {
    return toVariantList(files);
};
constexpr auto decodeFiles = [](const QVariant &variant) {
    return toDownloadFilesInfos(variant.toList());
};
constexpr auto encodeRecords = [](const auto &records) { return toVariant(records); };

constexpr auto persistentInfoFields = [](auto &fields) {
    using Info = AbstractDownloadPersistentInfo;
    fields.value(u"originatorsNamesChain"_qs, &Info::originatorsNamesChain);
    fields.valueIfPresent(u"uuid"_qs, &Info::uuid);
    fields.record(u"guid"_qs, &Info::guid, toDownloadGuid);
    fields.value(u"moduleUid"_qs, &Info::moduleUid);
    fields.value(u"createdBy"_qs, &Info::createdBy);
    fields.value(u"flags"_qs, &Info::flags);
    fields.value(u"parentDownloadId"_qs, &Info::parentDownloadId);
    fields.value(u"childrenDownloadsIds"_qs, &Info::childrenDownloadsIds);
    fields.recordIfPresent(u"desc"_qs, &Info::desc, toDownloadResourceDesc);
    fields.record(u"source"_qs, &Info::source, toDownloadSourceInfo);
    fields.record(u"destination"_qs, &Info::destination, toDownloadDestination);
    fields.value(u"mirrors"_qs, &Info::mirrors, encodeRecords, toDownloadMirrors);
    fields.value(u"title"_qs, &Info::title);
    fields.value(u"creationTime"_qs, &Info::creationTime);
    fields.value(u"finishedTime"_qs, &Info::finishedTime);
    fields.value(u"resumeData"_qs, &Info::resumeData);
    fields.record(u"lastError"_qs, &Info::lastError, abstractErrorFromContainer<QVariantHash>);
    fields.value(u"lastErrorTime"_qs, &Info::lastErrorTime);
    fields.value(u"resumeSupport"_qs, &Info::resumeSupport);
    fields.value(downloadFilesKey(), &Info::files, encodeFiles, decodeFiles);
    fields.value(u"allFilesType"_qs, &Info::allFilesType);
    fields.valueUnlessZero(u"tbu2c"_qs, &Info::tbu2c);
    fields.valueIfPresent(u"priority"_qs, &Info::priority);
    fields.value(u"supportedOptions"_qs, &Info::supportedOptions);
    fields.value(u"userAgent"_qs, &Info::userAgent);
    fields.value(u"preferredFileTitle"_qs, &Info::preferredFileTitle);
    fields.value(u"subtitles"_qs, &Info::subtitles, encodeRecords, toDownloadableSubtitlesInfos);
    fields.numberOr(u"launchableFileIndex"_qs, &Info::launchableFileIndex, -1);
    fields.value(u"existingFileReaction"_qs, &Info::existingFileReaction);
    fields.numberOr(u"order"_qs, &Info::order, -1);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadPersistentInfo &info)
{
    return encodedRecord(info, persistentInfoFields);
}

QByteArrayView toStream(RecordsStreamContext &context, const AbstractDownloadPersistentInfo &info)
{
    return streamedRecord(context, info, persistentInfoFields);
}

AbstractDownloadPersistentInfo toDownloadInfo(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadPersistentInfo>(hash, persistentInfoFields);
}
