#include "abstractdownloadruntimeinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto runTimeFields = [](auto &fields) {
    fields.record(u"live"_qs, &AbstractDownloadRunTimeInfo::live, toLiveDownloadRunTimeInfo);
    fields.value(u"flags"_qs, &AbstractDownloadRunTimeInfo::flags);
    fields.value(u"lockReason"_qs, &AbstractDownloadRunTimeInfo::lockReason);
    fields.record(u"loi"_qs, &AbstractDownloadRunTimeInfo::loi, toLockedDownloadOperationInfo);
    fields.value(u"allFilesTypes"_qs, &AbstractDownloadRunTimeInfo::allFilesTypes);
    fields.value(u"forbidAutoRetryCount"_qs, &AbstractDownloadRunTimeInfo::forbidAutoRetryCount);
    fields.value(u"storageId"_qs, &AbstractDownloadRunTimeInfo::storageId);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadRunTimeInfo &info)
{
    return encodedRecord(info, runTimeFields);
}

AbstractDownloadRunTimeInfo toDownloadRunTimeInfo(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadRunTimeInfo>(hash, runTimeFields);
}
