#include "abstractdownloadschedulerecord.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto scheduleFields = [](auto &fields) {
    fields.value(u"days"_qs, &AbstractDownloadScheduleRecord::days);
    fields.value(u"fromTime"_qs, &AbstractDownloadScheduleRecord::fromTime);
    fields.value(u"toTime"_qs, &AbstractDownloadScheduleRecord::toTime);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadScheduleRecord &schedule)
{
    return encodedRecord(schedule, scheduleFields);
}

AbstractDownloadScheduleRecord toDownloadScheduleRecord(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadScheduleRecord>(hash, scheduleFields);
}
