#include "mediarequestsanalyzer.h"

#include "httpheaderblock.h"
#include "mediakind.h"
#include "mediarequestscollector.h"
#include "mediaurlsearch.h"
#include "pmxflvsniffcallproctask.h"

#include <QUrl>

#include <algorithm>
#include <tuple>
#include <unordered_set>

namespace {

/// A candidate that was not observed, only named: by a URL and, perhaps, headers.
MediaRequest unobserved(const std::string &url, const pmxFlvSniffCallProcTask &task)
{
    MediaRequest media;
    media.request.url = url;
    media.request.pageUrl = task.webPageUrl.empty() ? task.srcTabUrl : task.webPageUrl;
    media.kind = mediaKindOfFileName(fileNameOfUrl(url));
    return media;
}

bool isOfFrame(const MediaRequest &media, const std::string &frameUrl)
{
    return !frameUrl.empty()
        && (media.request.pageUrl == frameUrl
            || HttpHeaderBlock(media.request.requestHeaders).value("referer") == frameUrl);
}

bool isOfPage(const MediaRequest &media, const pmxFlvSniffCallProcTask &task)
{
    const std::string &page = media.request.pageUrl;
    return !page.empty() && (page == task.webPageUrl || page == task.srcTabUrl);
}

} // namespace

MediaRequestsAnalyzer::MediaRequestsAnalyzer(QSharedPointer<MediaRequestsCollector> media,
                                             QObject *parent)
    : QObject(parent), m_media(std::move(media))
{
}

std::vector<MediaRequest>
MediaRequestsAnalyzer::candidates(const pmxFlvSniffCallProcTask &task) const
{
    if (!task.requestId.empty() || !task.url.empty()) {
        auto found = named(task);
        return found ? std::vector{std::move(*found)} : std::vector<MediaRequest>();
    }

    std::vector<MediaRequest> found = observed(task);
    std::unordered_set<std::string> urls;
    for (const MediaRequest &media : found)
        urls.insert(media.request.url);
    const QUrl page(
        QString::fromStdString(task.webPageUrl.empty() ? task.srcTabUrl : task.webPageUrl));
    for (const std::string *text :
         {&task.flashVars, &task.swfUrl, &task.otherFlashVars, &task.otherSwfUrls}) {
        for (const QUrl &url : findMediaUrls(*text, page)) {
            const std::string address = url.toEncoded().toStdString();
            if (urls.insert(address).second)
                found.push_back(unobserved(address, task));
        }
    }
    return found;
}

std::optional<MediaRequest> MediaRequestsAnalyzer::named(const pmxFlvSniffCallProcTask &task) const
{
    if (!task.requestId.empty()) {
        if (auto media = m_media->request(task.requestId)) {
            // An id alone says which request is meant; an id with another URL is out of date.
            if (task.url.empty() || media->request.url == task.url)
                return media;
        }
    }
    if (task.url.empty())
        return std::nullopt;
    for (MediaRequest &media : m_media->mediaRequests()) {
        if (media.request.url == task.url)
            return std::move(media);
    }
    MediaRequest media = unobserved(task.url, task);
    media.request.requestHeaders = task.requestHeaders;
    media.request.responseHeaders = task.responseHeaders;
    const HttpHeaderBlock headers(task.responseHeaders);
    if (!headers.isEmpty()) {
        media.kind = mediaKindOf(task.url, headers);
        media.suggestedName = headers.fileName().toStdString();
    }
    return media;
}

std::vector<MediaRequest> MediaRequestsAnalyzer::observed(const pmxFlvSniffCallProcTask &task) const
{
    std::vector<MediaRequest> found;
    for (MediaRequest &media : m_media->mediaRequests()) {
        if (isOfFrame(media, task.frameUrl) || isOfPage(media, task))
            found.push_back(std::move(media));
    }
    const auto rank = [&task](const MediaRequest &media) {
        return std::tuple(!isOfFrame(media, task.frameUrl),
                          media.kind != MediaKind::StreamMediaKind, ~media.size.value_or(0),
                          ~media.request.number);
    };
    std::stable_sort(found.begin(), found.end(),
                     [&rank](const auto &a, const auto &b) { return rank(a) < rank(b); });
    std::unordered_set<std::string> urls;
    std::erase_if(found,
                  [&urls](const auto &media) { return !urls.insert(media.request.url).second; });
    return found;
}
