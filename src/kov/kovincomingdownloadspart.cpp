#include "kovincomingdownloadspart.h"

#include "abstractnewdownloadsrequest.h"
#include "kovdownloadsqueue.h"
#include "kovhttpdownload.h"
#include "qtappdefaultlogger.h"
#include "vhipcincomingdownloadskeys.h"
#include "vhipckeys.h"

#include <QVariant>

#include <utility>

namespace {

namespace Keys = VhIpcIncomingDownloadsKeys;

KovDownloadRequest downloadRequest(const AbstractDownloadPersistentInfo &info)
{
    return {.url = info.source.url,
            .referrer = info.source.referer,
            .userAgent = info.userAgent,
            .cookies = info.source.cookies,
            .postData = info.source.postData,
            .suggestedName = info.preferredFileTitle};
}

} // namespace

KovIncomingDownloadsPart::KovIncomingDownloadsPart(QSharedPointer<KovDownloadsQueue> queue,
                                                   QObject *parent)
    : QtAbstractVhIpcPart(parent), m_queue(std::move(queue))
{
}

KovIncomingDownloadsPart::~KovIncomingDownloadsPart() = default;

void KovIncomingDownloadsPart::processVh(const QHash<QString, QVariant> &map)
{
    if (map.value(VhIpcKeys::reason()).toString() != Keys::addReason())
        return;
    const qint64 id = map.value(VhIpcKeys::id()).toLongLong();
    const bool added = addDownloads(toNewDownloadsRequest(map.value(Keys::request()).toHash()));
    Q_EMIT sendVh(
        {{VhIpcKeys::name(), Keys::partName()},
         {VhIpcKeys::reason(), Keys::finishedReason()},
         {VhIpcKeys::id(), id},
         {Keys::added(), added},
         {Keys::aborted(), false},
         {Keys::abortReason(), static_cast<int>(AbstractDownloadAbortReason::None)},
         {Keys::error(), added ? QString() : QStringLiteral("nothing that can be downloaded")},
         {Keys::isSilent(), false}});
}

bool KovIncomingDownloadsPart::addDownloads(const AbstractNewDownloadsRequest &request)
{
    qsizetype added = 0;
    for (qsizetype i = 0; i < request.downloads.size(); ++i) {
        const auto &info = request.downloads.at(i).info;
        if (!info || !request.selectedDownloads.testBit(i)
            || !KovHttpDownload::isSupported(info->source.url))
            continue;
        m_queue->add(downloadRequest(*info));
        ++added;
    }
    logLine(1,
            QStringLiteral("[KovIncomingDownloadsPart]: added %1 of %2 downloads")
                .arg(QString::number(added), QString::number(request.downloads.size())));
    return added > 0;
}
