#include "abstractdownloadruntimeinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &info)
{
    fields.record(u"live"_qs, info.live, toLiveDownloadRunTimeInfo);
    fields.value(u"flags"_qs, info.flags);
    fields.value(u"lockReason"_qs, info.lockReason);
    fields.record(u"loi"_qs, info.loi, toLockedDownloadOperationInfo);
    fields.value(u"allFilesTypes"_qs, info.allFilesTypes);
    fields.value(u"forbidAutoRetryCount"_qs, info.forbidAutoRetryCount);
    fields.value(u"storageId"_qs, info.storageId);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadRunTimeInfo &info)
{
    VariantFieldsWriter fields;
    describe(fields, info);
    return fields.takeHash();
}

AbstractDownloadRunTimeInfo toDownloadRunTimeInfo(const QVariantHash &hash)
{
    AbstractDownloadRunTimeInfo info;
    VariantFieldsReader fields(hash);
    describe(fields, info);
    return info;
}
