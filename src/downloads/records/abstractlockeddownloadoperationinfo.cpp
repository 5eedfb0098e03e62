#include "abstractlockeddownloadoperationinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto operationFields = [](auto &fields) {
    fields.value(u"running"_qs, &AbstractLockedDownloadOperationInfo::running);
    fields.value(u"currentProgress"_qs, &AbstractLockedDownloadOperationInfo::currentProgress);
    fields.value(u"totalProgress"_qs, &AbstractLockedDownloadOperationInfo::totalProgress);
    fields.record(u"error"_qs, &AbstractLockedDownloadOperationInfo::error,
                  abstractErrorFromContainer<QVariantHash>);
    fields.value(u"errorTime"_qs, &AbstractLockedDownloadOperationInfo::errorTime);
};

} // namespace

QVariantHash toVariantHash(const AbstractLockedDownloadOperationInfo &operation)
{
    return encodedRecord(operation, operationFields);
}

AbstractLockedDownloadOperationInfo toLockedDownloadOperationInfo(const QVariantHash &hash)
{
    return decodedRecord<AbstractLockedDownloadOperationInfo>(hash, operationFields);
}
