#include "pmxkovbhipcvideosniffertaskprocessor.h"

#include "httpheaderblock.h"
#include "mediarequestsanalyzer.h"
#include "pmxkovbhipcdownloadinfo.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipcvideosniffertaskresponse.h"
#include "pmxtaskresponses.h"
#include "urlchecks.h"
#include "wbeincomingdownloadsprocessor.h"

#include <QUrl>

namespace {

/// Keeps these ids apart from those of tasks of other types in the application's answers.
QString internalId(const std::string &taskId)
{
    return QStringLiteral("video_sniffer:") + QString::fromStdString(taskId);
}

bool saysWhatToLookFor(const pmxFlvSniffCallProcTask &task)
{
    return !task.requestId.empty() || !task.url.empty() || !task.webPageUrl.empty()
        || !task.srcTabUrl.empty() || !task.frameUrl.empty() || !task.flashVars.empty()
        || !task.swfUrl.empty() || !task.otherFlashVars.empty() || !task.otherSwfUrls.empty();
}

std::shared_ptr<pmxKovBhIpcDownloadInfo> toDownload(const MediaRequest &media,
                                                    const pmxFlvSniffCallProcTask &task)
{
    const HttpHeaderBlock headers(media.request.requestHeaders);
    auto download = std::make_shared<pmxKovBhIpcDownloadInfo>();
    download->url = media.request.url;
    download->originalUrl = media.request.originalUrl;
    download->documentUrl = media.request.pageUrl.empty() ? task.webPageUrl : media.request.pageUrl;
    download->httpReferer = headers.value("referer");
    download->userAgent = headers.value("user-agent");
    download->httpCookies = headers.value("cookie");
    download->suggestedName = media.suggestedName.empty() ? task.name : media.suggestedName;
    download->fileSize = media.size.value_or(pmxKovBhIpcDownloadInfo::UnknownFileSize);
    download->mediaKind = media.kind;
    return download;
}

} // namespace

pmxKovBhIpcVideoSnifferTaskProcessor::pmxKovBhIpcVideoSnifferTaskProcessor(
    QSharedPointer<WbeIncomingDownloadsProcessor> downloads,
    QSharedPointer<MediaRequestsAnalyzer> analyzer)
    : m_downloads(std::move(downloads)), m_analyzer(std::move(analyzer))
{
    connect(m_downloads.data(), &WbeIncomingDownloadsProcessor::finished, this,
            &pmxKovBhIpcVideoSnifferTaskProcessor::onFinished);
}

void pmxKovBhIpcVideoSnifferTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                   Callback callback)
{
    const pmxFlvSniffCallProcTask &wanted = task->video_sniffer.task;
    if (!saysWhatToLookFor(wanted)) {
        answer(task, callback, {"", "invalid arguments", "no page, URL or request is named"});
        return;
    }
    const std::vector<MediaRequest> candidates = m_analyzer->candidates(wanted);
    if (candidates.empty()) {
        answer(task, callback, {"", "no_media_found", ""});
        return;
    }
    // Only a URL of the task may be such: what players make up themselves ("blob:"), or no URL.
    if (!isDownloadableByCurl(QUrl(QString::fromStdString(candidates.front().request.url)))) {
        answer(task, callback, {"", "invalid arguments", "the URL cannot be downloaded"});
        return;
    }
    pmxSerializableSharedObjVector<pmxKovBhIpcDownloadInfo> downloads;
    downloads.add_item_(toDownload(candidates.front(), wanted));
    const QString id = internalId(task->id);
    m_pending.insert(id, {std::move(task), std::move(callback)});
    m_downloads->process(id, downloads);
}

void pmxKovBhIpcVideoSnifferTaskProcessor::onFinished(const QString &id, bool added, bool aborted,
                                                      AbstractDownloadAbortReason abortReason,
                                                      const QString &error)
{
    const auto pending = m_pending.constFind(id);
    if (pending == m_pending.constEnd())
        return;
    const auto [task, callback] = *pending;
    m_pending.erase(pending);

    if (added || (aborted && abortReason == AbstractDownloadAbortReason::AlreadyExists))
        answer(task, callback, {"1", "", ""});
    else if (aborted)
        answer(task, callback, {"0", "", error.toStdString()});
    else
        answer(task, callback, {"", error.toStdString(), ""});
}

void pmxKovBhIpcVideoSnifferTaskProcessor::answer(const std::shared_ptr<pmxKovBhIpcTask> &task,
                                                  const Callback &callback, const Answer &answer)
{
    const auto response = pmxResponseTo<pmxKovBhIpcVideoSnifferTaskResponse>(*task);
    response->result = answer.result;
    response->error = answer.error;
    response->videoSniffer.result = answer.result;
    response->videoSniffer.error = answer.error;
    response->videoSniffer.error2 = answer.error2;
    callback(task, response);
}
