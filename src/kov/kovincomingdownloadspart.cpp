#include "kovincomingdownloadspart.h"

#include "abstractnewdownloadsrequest.h"
#include "kovdownloadsqueue.h"
#include "kovhttpexchange.h"
#include "qtappdefaultlogger.h"
#include "vhipcincomingdownloadskeys.h"
#include "vhipckeys.h"

#include <QVariant>

#include <utility>

namespace {

namespace MessageKeys = VhIpcIncomingDownloadsKeys;

KovDownloadRequest downloadRequest(const AbstractDownloadPersistentInfo &info,
                                   AbstractDownloadType type)
{
    const bool isSizeKnown = info.files.size() == 1 && info.files.constFirst().size > 0;
    return {.url = info.source.url,
            .referrer = info.source.referer,
            .userAgent = info.userAgent,
            .cookies = info.source.cookies,
            .postData = info.source.postData,
            .suggestedName = info.preferredFileTitle,
            .announcedBytes = isSizeKnown ? info.files.constFirst().size : -1,
            .isStream = type == AbstractDownloadType::MediaStream};
}

QList<KovDownloadRequest> selectedDownloads(const AbstractNewDownloadsRequest &request)
{
    QList<KovDownloadRequest> selected;
    for (qsizetype i = 0; i < request.downloads.size(); ++i) {
        const auto &info = request.downloads.at(i).info;
        if (info && request.selectedDownloads.testBit(i)
            && KovHttpExchange::isSupported(info->source.url))
            selected.append(downloadRequest(*info, request.preferredDownloadType));
    }
    return selected;
}

} // namespace

KovIncomingDownloadsPart::KovIncomingDownloadsPart(QSharedPointer<KovDownloadsQueue> queue,
                                                   QObject *parent)
    : QtAbstractVhIpcPart(parent), m_queue(std::move(queue))
{
}

void KovIncomingDownloadsPart::processVh(const QHash<QString, QVariant> &map)
{
    if (map.value(VhIpcKeys::reason()).toString() != MessageKeys::addReason())
        return;
    const qint64 id = map.value(VhIpcKeys::id()).toLongLong();
    const QList<KovDownloadRequest> downloads =
        selectedDownloads(toNewDownloadsRequest(map.value(MessageKeys::request()).toHash()));
    if (downloads.isEmpty())
        answer(id, QStringLiteral("nothing that can be downloaded"));
    else if (downloads.size() == 1 && !downloads.constFirst().isStream)
        m_queue->offer(downloads.constFirst(), this,
                       [this, id](const QString &error) { answer(id, error); });
    else
        answer(id, m_queue->add(downloads));
}

void KovIncomingDownloadsPart::answer(qint64 id, const QString &error)
{
    if (!error.isEmpty())
        logLine(1, QStringLiteral("[KovIncomingDownloadsPart]: not added: %1").arg(error));
    Q_EMIT sendVh(
        {{VhIpcKeys::name(), MessageKeys::partName()},
         {VhIpcKeys::reason(), MessageKeys::finishedReason()},
         {VhIpcKeys::id(), id},
         {MessageKeys::added(), error.isEmpty()},
         {MessageKeys::aborted(), false},
         {MessageKeys::abortReason(), static_cast<int>(AbstractDownloadAbortReason::None)},
         {MessageKeys::error(), error},
         {MessageKeys::isSilent(), false}});
}
