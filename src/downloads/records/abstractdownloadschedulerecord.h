#pragma once

#include <QVariantHash>

/// When a download may run: between two times of day, on some days of the week.
struct AbstractDownloadScheduleRecord {
    /// One bit per day, the lowest is Monday.
    int days = 0;
    /// In minutes since midnight, local time, as in the setting "ScheduleForNewDownloads".
    int fromTime = 0;
    int toTime = 0;

    bool operator==(const AbstractDownloadScheduleRecord &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadScheduleRecord &schedule);
AbstractDownloadScheduleRecord toDownloadScheduleRecord(const QVariantHash &hash);
