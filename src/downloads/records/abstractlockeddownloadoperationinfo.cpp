#include "abstractlockeddownloadoperationinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &operation)
{
    fields.value(u"running"_qs, operation.running);
    fields.value(u"currentProgress"_qs, operation.currentProgress);
    fields.value(u"totalProgress"_qs, operation.totalProgress);
    fields.record(u"error"_qs, operation.error, abstractErrorFromContainer<QVariantHash>);
    fields.value(u"errorTime"_qs, operation.errorTime);
}

} // namespace

QVariantHash toVariantHash(const AbstractLockedDownloadOperationInfo &operation)
{
    VariantFieldsWriter fields;
    describe(fields, operation);
    return fields.takeHash();
}

AbstractLockedDownloadOperationInfo toLockedDownloadOperationInfo(const QVariantHash &hash)
{
    AbstractLockedDownloadOperationInfo operation;
    VariantFieldsReader fields(hash);
    describe(fields, operation);
    return operation;
}
