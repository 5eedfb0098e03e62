#include "abstractdownloadschedulerecord.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &schedule)
{
    fields.value(u"days"_qs, schedule.days);
    fields.value(u"fromTime"_qs, schedule.fromTime);
    fields.value(u"toTime"_qs, schedule.toTime);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadScheduleRecord &schedule)
{
    VariantFieldsWriter fields;
    describe(fields, schedule);
    return fields.takeHash();
}

AbstractDownloadScheduleRecord toDownloadScheduleRecord(const QVariantHash &hash)
{
    AbstractDownloadScheduleRecord schedule;
    VariantFieldsReader fields(hash);
    describe(fields, schedule);
    return schedule;
}
