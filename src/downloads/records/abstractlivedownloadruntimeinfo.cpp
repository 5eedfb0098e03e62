#include "abstractlivedownloadruntimeinfo.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto liveFields = [](auto &fields) {
    using Info = AbstractLiveDownloadRunTimeInfo;
    fields.value(u"downloadSpeed"_qs, &Info::downloadSpeed);
    fields.value(u"uploadSpeed"_qs, &Info::uploadSpeed);
    fields.value(u"payloadDownloadSpeed"_qs, &Info::payloadDownloadSpeed);
    fields.value(u"payloadUploadSpeed"_qs, &Info::payloadUploadSpeed);
    fields.value(u"running"_qs, &Info::running);
    fields.value(u"stopping"_qs, &Info::stopping);
    fields.value(u"tasks"_qs, &Info::tasks);
    fields.value(u"tasksProgress"_qs, &Info::tasksProgress);
    fields.value(
        u"connections"_qs, &Info::connections,
        [](const QtConnectionsMap &connections) { return toVariant(connections); },
        toConnectionsMap);
    fields.value(u"details"_qs, &Info::details);
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
