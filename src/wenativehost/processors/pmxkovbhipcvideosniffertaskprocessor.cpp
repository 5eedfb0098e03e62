#include "pmxkovbhipcvideosniffertaskprocessor.h"

#include "httpheaderblock.h"
#include "mediarequestsanalyzer.h"
#include "pmxkovbhipcdownloadinfo.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipcvideosniffertaskresponse.h"
#include "pmxtaskerrors.h"
#include "pmxtaskresponses.h"
#include "urlchecks.h"
#include "wbeincomingdownloadsprocessor.h"

#include <QUrl>

namespace {

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

std::shared_ptr<pmxKovBhIpcVideoSnifferTaskResponse> responseTo(const pmxKovBhIpcTask &task,
                                                                const DownloadsOutcome &outcome)
{
    auto response = pmxResponseTo<pmxKovBhIpcVideoSnifferTaskResponse>(task);
    pmxSetOutcome(*response, outcome);
    response->videoSniffer.result = response->result;
    response->videoSniffer.error = response->error;
    return response;
}

} // namespace

pmxKovBhIpcVideoSnifferTaskProcessor::pmxKovBhIpcVideoSnifferTaskProcessor(
    QSharedPointer<WbeIncomingDownloadsProcessor> downloads,
    QSharedPointer<MediaRequestsAnalyzer> analyzer)
    : m_downloads(std::move(downloads)), m_analyzer(std::move(analyzer))
{
}

void pmxKovBhIpcVideoSnifferTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                   Callback callback)
{
    const pmxFlvSniffCallProcTask &wanted = task->video_sniffer.task;
    const auto fail = [&](const char *error, const char *detail) {
        const auto response = responseTo(*task, {.error = QString::fromLatin1(error)});
        response->videoSniffer.error2 = detail;
        callback(task, response);
    };
    if (!saysWhatToLookFor(wanted)) {
        fail(pmxTaskErrors::invalidArguments, "no page, URL or request is named");
        return;
    }
    const std::vector<MediaRequest> candidates = m_analyzer->candidates(wanted);
    if (candidates.empty()) {
        fail(pmxTaskErrors::noMediaFound, "");
        return;
    }
    // Only a URL given by the task may be unsupported: one made by a player ("blob:"), or no URL.
    if (!isDownloadableByCurl(QUrl(QString::fromStdString(candidates.front().request.url)))) {
        fail(pmxTaskErrors::invalidArguments, "the URL cannot be downloaded");
        return;
    }
    pmxSerializableSharedObjVector<pmxKovBhIpcDownloadInfo> downloads;
    downloads.add_item_(toDownload(candidates.front(), wanted));
    m_downloads->process(std::move(downloads), WbeIncomingDownloadsProcessor::Owner::User,
                         [task, callback](const DownloadsOutcome &outcome) {
                             const auto response = responseTo(*task, outcome);
                             if (response->result == "0")
                                 response->videoSniffer.error2 = outcome.error.toStdString();
                             callback(task, response);
                         });
}
