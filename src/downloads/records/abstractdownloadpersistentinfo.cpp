#include "abstractdownloadpersistentinfo.h"

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
    fields.value(u"originatorsNamesChain"_qs,
                 &AbstractDownloadPersistentInfo::originatorsNamesChain);
    fields.valueIfPresent(u"uuid"_qs, &AbstractDownloadPersistentInfo::uuid);
    fields.record(u"guid"_qs, &AbstractDownloadPersistentInfo::guid, toDownloadGuid);
    fields.value(u"moduleUid"_qs, &AbstractDownloadPersistentInfo::moduleUid);
    fields.value(u"createdBy"_qs, &AbstractDownloadPersistentInfo::createdBy);
    fields.value(u"flags"_qs, &AbstractDownloadPersistentInfo::flags);
    fields.value(u"parentDownloadId"_qs, &AbstractDownloadPersistentInfo::parentDownloadId);
    fields.value(u"childrenDownloadsIds"_qs, &AbstractDownloadPersistentInfo::childrenDownloadsIds);
    fields.recordIfPresent(u"desc"_qs, &AbstractDownloadPersistentInfo::desc,
                           toDownloadResourceDesc);
    fields.record(u"source"_qs, &AbstractDownloadPersistentInfo::source, toDownloadSourceInfo);
    fields.record(u"destination"_qs, &AbstractDownloadPersistentInfo::destination,
                  toDownloadDestination);
    fields.value(u"mirrors"_qs, &AbstractDownloadPersistentInfo::mirrors, encodeRecords,
                 toDownloadMirrors);
    fields.value(u"title"_qs, &AbstractDownloadPersistentInfo::title);
    fields.value(u"creationTime"_qs, &AbstractDownloadPersistentInfo::creationTime);
    fields.value(u"finishedTime"_qs, &AbstractDownloadPersistentInfo::finishedTime);
    fields.value(u"resumeData"_qs, &AbstractDownloadPersistentInfo::resumeData);
    fields.record(u"lastError"_qs, &AbstractDownloadPersistentInfo::lastError,
                  abstractErrorFromContainer<QVariantHash>);
    fields.value(u"lastErrorTime"_qs, &AbstractDownloadPersistentInfo::lastErrorTime);
    fields.value(u"resumeSupport"_qs, &AbstractDownloadPersistentInfo::resumeSupport);
    fields.value(downloadFilesKey(), &AbstractDownloadPersistentInfo::files, encodeFiles,
                 decodeFiles);
    fields.value(u"allFilesType"_qs, &AbstractDownloadPersistentInfo::allFilesType);
    fields.valueUnlessZero(u"tbu2c"_qs, &AbstractDownloadPersistentInfo::tbu2c);
    fields.valueIfPresent(u"priority"_qs, &AbstractDownloadPersistentInfo::priority);
    fields.value(u"supportedOptions"_qs, &AbstractDownloadPersistentInfo::supportedOptions);
    fields.value(u"userAgent"_qs, &AbstractDownloadPersistentInfo::userAgent);
    fields.value(u"preferredFileTitle"_qs, &AbstractDownloadPersistentInfo::preferredFileTitle);
    fields.value(u"subtitles"_qs, &AbstractDownloadPersistentInfo::subtitles, encodeRecords,
                 toDownloadableSubtitlesInfos);
    fields.numberOr(u"launchableFileIndex"_qs, &AbstractDownloadPersistentInfo::launchableFileIndex,
                    -1);
    fields.value(u"existingFileReaction"_qs, &AbstractDownloadPersistentInfo::existingFileReaction);
    fields.numberOr(u"order"_qs, &AbstractDownloadPersistentInfo::order, -1);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadPersistentInfo &info)
{
    return encodedRecord(info, persistentInfoFields);
}

AbstractDownloadPersistentInfo toDownloadInfo(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadPersistentInfo>(hash, persistentInfoFields);
}
