#include "abstractlockeddownloadoperationinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto operationFields = [](auto &fields) {
    using Operation = AbstractLockedDownloadOperationInfo;
    fields.value(u"running"_qs, &Operation::running);
    fields.value(u"currentProgress"_qs, &Operation::currentProgress);
    fields.value(u"totalProgress"_qs, &Operation::totalProgress);
    fields.record(u"error"_qs, &Operation::error, abstractErrorFromContainer<QVariantHash>);
    fields.value(u"errorTime"_qs, &Operation::errorTime);
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
