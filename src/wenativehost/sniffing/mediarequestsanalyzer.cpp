#include "mediarequestsanalyzer.h"

#include "httpheaderblock.h"
#include "mediakind.h"
#include "mediarequestscollector.h"
#include "mediaurlsearch.h"
#include "pageurl.h"
#include "pmxflvsniffcallproctask.h"

#include <QUrl>

#include <algorithm>
#include <string_view>
#include <tuple>
#include <unordered_set>

namespace {

const std::string &pageOf(const pmxFlvSniffCallProcTask &task)
{
    return task.webPageUrl.empty() ? task.srcTabUrl : task.webPageUrl;
}

/// A candidate that was not observed, only named by a URL and perhaps headers.
MediaRequest unobserved(const std::string &url, const pmxFlvSniffCallProcTask &task)
{
    MediaRequest media;
    media.request.url = url;
    media.request.originalUrl = url;
    media.request.pageUrl = pageOf(task);
    media.kind = mediaKindOfFileName(fileNameOfUrl(url));
    return media;
}

bool isSamePage(const std::string &page, const std::string &other)
{
    return !page.empty() && withoutFragment(page) == withoutFragment(other);
}

/// "scheme://host/", the only part of a page's URL that is sent as referrer cross-origin.
std::string_view originOf(std::string_view url)
{
    const size_t authority = url.find("//");
    const size_t path =
        authority == std::string_view::npos ? authority : url.find('/', authority + 2);
    return path == std::string_view::npos ? std::string_view() : url.substr(0, path + 1);
}

bool isOfPage(const MediaRequest &media, const pmxFlvSniffCallProcTask &task)
{
    const std::string &page = media.request.pageUrl;
    return isSamePage(page, task.webPageUrl) || isSamePage(page, task.srcTabUrl);
}

bool isOfFrame(const MediaRequest &media, const pmxFlvSniffCallProcTask &task)
{
    if (task.frameUrl.empty())
        return false;
    if (isSamePage(media.request.pageUrl, task.frameUrl))
        return true;
    const std::string referrer = HttpHeaderBlock(media.request.requestHeaders).value("referer");
    // Frames of one origin may be on many pages.
    return isSamePage(referrer, task.frameUrl)
        || (!referrer.empty() && referrer == originOf(task.frameUrl) && isOfPage(media, task));
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
    const QUrl page(QString::fromStdString(pageOf(task)));
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
            // An id alone identifies the request; an id with another URL is outdated.
            if (task.url.empty() || media->request.url == task.url
                || media->request.originalUrl == task.url)
                return media;
        }
    }
    if (task.url.empty())
        return std::nullopt;
    if (auto media = m_media->requestOf(task.url, pageOf(task)))
        return media;
    MediaRequest media = unobserved(task.url, task);
    media.request.requestHeaders = task.requestHeaders;
    media.request.responseHeaders = task.responseHeaders;
    const HttpHeaderBlock headers(task.responseHeaders);
    media.kind = mediaKindOf(task.url, headers);
    media.suggestedName = headers.fileName().toStdString();
    return media;
}

std::vector<MediaRequest> MediaRequestsAnalyzer::observed(const pmxFlvSniffCallProcTask &task) const
{
    // Parse the headers once, not with every comparison.
    using Rank = std::tuple<bool, bool, quint64, quint64>;
    std::vector<std::pair<Rank, MediaRequest>> ranked;
    for (MediaRequest &media : m_media->mediaRequests()) {
        const bool isFramed = isOfFrame(media, task);
        if (!isFramed && !isOfPage(media, task))
            continue;
        const Rank rank(!isFramed, media.kind != MediaKind::StreamMediaKind,
                        ~media.size.value_or(0), ~media.request.number);
        ranked.emplace_back(rank, std::move(media));
    }
    std::sort(ranked.begin(), ranked.end(),
              [](const auto &a, const auto &b) { return a.first < b.first; });
    std::vector<MediaRequest> found;
    std::unordered_set<std::string> urls;
    for (auto &[rank, media] : ranked) {
        if (urls.emplace(withoutFragment(media.request.url)).second)
            found.push_back(std::move(media));
    }
    return found;
}
