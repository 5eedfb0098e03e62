#include "abstractlivedownloadruntimeinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto liveFields = [](auto &fields) {
    fields.value(u"downloadSpeed"_qs, &AbstractLiveDownloadRunTimeInfo::downloadSpeed);
    fields.value(u"uploadSpeed"_qs, &AbstractLiveDownloadRunTimeInfo::uploadSpeed);
    fields.value(u"payloadDownloadSpeed"_qs,
                 &AbstractLiveDownloadRunTimeInfo::payloadDownloadSpeed);
    fields.value(u"payloadUploadSpeed"_qs, &AbstractLiveDownloadRunTimeInfo::payloadUploadSpeed);
    fields.value(u"running"_qs, &AbstractLiveDownloadRunTimeInfo::running);
    fields.value(u"stopping"_qs, &AbstractLiveDownloadRunTimeInfo::stopping);
    fields.value(u"tasks"_qs, &AbstractLiveDownloadRunTimeInfo::tasks);
    fields.value(u"tasksProgress"_qs, &AbstractLiveDownloadRunTimeInfo::tasksProgress);
    fields.value(
        u"connections"_qs, &AbstractLiveDownloadRunTimeInfo::connections,
        [](const QtConnectionsMap &connections) { return toVariant(connections); },
        toConnectionsMap);
    fields.value(u"details"_qs, &AbstractLiveDownloadRunTimeInfo::details);
};

} // namespace

QVariantHash toVariantHash(const AbstractLiveDownloadRunTimeInfo &info)
{
    return encodedRecord(info, liveFields);
}

AbstractLiveDownloadRunTimeInfo toLiveDownloadRunTimeInfo(const QVariantHash &hash)
{
    return decodedRecord<AbstractLiveDownloadRunTimeInfo>(hash, liveFields);
}

QList<int> toDownloadTasksProgress(const QVariantList &list)
{
    QList<int> progress;
    readVariantValue(list, progress);
    return progress;
}
