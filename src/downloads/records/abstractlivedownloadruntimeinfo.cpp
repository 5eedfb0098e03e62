#include "abstractlivedownloadruntimeinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &info)
{
    fields.value(u"downloadSpeed"_qs, info.downloadSpeed);
    fields.value(u"uploadSpeed"_qs, info.uploadSpeed);
    fields.value(u"payloadDownloadSpeed"_qs, info.payloadDownloadSpeed);
    fields.value(u"payloadUploadSpeed"_qs, info.payloadUploadSpeed);
    fields.value(u"running"_qs, info.running);
    fields.value(u"stopping"_qs, info.stopping);
    fields.value(u"tasks"_qs, info.tasks);
    fields.value(u"tasksProgress"_qs, info.tasksProgress);
    fields.value(
        u"connections"_qs, info.connections,
        [](const QtConnectionsMap &connections) { return toVariant(connections); },
        toConnectionsMap);
    fields.value(u"details"_qs, info.details);
}

} // namespace

QVariantHash toVariantHash(const AbstractLiveDownloadRunTimeInfo &info)
{
    VariantFieldsWriter fields;
    describe(fields, info);
    return fields.takeHash();
}

AbstractLiveDownloadRunTimeInfo toLiveDownloadRunTimeInfo(const QVariantHash &hash)
{
    AbstractLiveDownloadRunTimeInfo info;
    VariantFieldsReader fields(hash);
    describe(fields, info);
    return info;
}

QList<int> toDownloadTasksProgress(const QVariantList &list)
{
    QList<int> progress;
    readVariantValue(list, progress);
    return progress;
}
