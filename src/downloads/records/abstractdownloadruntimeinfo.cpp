#include "abstractdownloadruntimeinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto runTimeFields = [](auto &fields) {
    using Info = AbstractDownloadRunTimeInfo;
    fields.record(u"live"_qs, &Info::live, toLiveDownloadRunTimeInfo);
    fields.value(u"flags"_qs, &Info::flags);
    fields.value(u"lockReason"_qs, &Info::lockReason);
    fields.record(u"loi"_qs, &Info::loi, toLockedDownloadOperationInfo);
    fields.value(u"allFilesTypes"_qs, &Info::allFilesTypes);
    fields.value(u"forbidAutoRetryCount"_qs, &Info::forbidAutoRetryCount);
    fields.value(u"storageId"_qs, &Info::storageId);
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
