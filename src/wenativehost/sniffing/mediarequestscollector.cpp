#include "mediarequestscollector.h"

#include "httpheaderblock.h"
#include "mediakind.h"
#include "networkrequestscollector.h"
#include "pageurl.h"
#include "qtclock.h"
#include "streamsegments.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace {

std::optional<quint64> sizeOfResource(const NetworkRequest &request, const HttpHeaderBlock &headers)
{
    constexpr int partialContent = 206;
    if (request.status == partialContent) {
        const auto range = headers.contentRange();
        return range ? range->total : std::nullopt;
    }
    // Content-Length counts the bytes on the wire, which may be compressed.
    return headers.contains("content-encoding") ? std::nullopt : headers.contentLength();
}

/// The length of a playlist is not that of the stream.
std::optional<quint64> sizeOfMedia(const NetworkRequest &request, MediaKind kind,
                                   const HttpHeaderBlock &headers)
{
    return kind == MediaKind::StreamMediaKind
        ? std::nullopt
        : std::max(sizeOfResource(request, headers), request.knownSize);
}

std::optional<quint64> sizeOfMedia(const NetworkRequest &request)
{
    return sizeOfMedia(request, request.kind, HttpHeaderBlock(request.responseHeaders));
}

MediaRequest toMediaRequest(const NetworkRequest &request)
{
    const HttpHeaderBlock headers(request.responseHeaders);
    const MediaKind kind = mediaKindOf(request.url, headers);
    return {request, kind, sizeOfMedia(request, kind, headers), headers.fileName().toStdString()};
}

bool isAnsweredWell(const NetworkRequest &request)
{
    // The response to a CORS preflight does not contain the resource.
    return request.method != "OPTIONS"
        && (request.state == NetworkRequest::State::Answered
            || request.state == NetworkRequest::State::Completed)
        && ((request.status >= 200 && request.status < 300 && request.status != 204)
            || request.status == 304);
}

bool isOlder(const NetworkRequest *a, const NetworkRequest *b) { return a->number < b->number; }

} // namespace

MediaRequestsCollector::MediaRequestsCollector(QSharedPointer<NetworkRequestsCollector> requests,
                                               QObject *parent)
    : QObject(parent), m_requests(std::move(requests)), m_timer(m_requests->clock().createTimer())
{
    connect(m_requests.data(), &NetworkRequestsCollector::pageChanged, this,
            &MediaRequestsCollector::onPageChanged);
    connect(m_timer.get(), &QtSingleShotTimer::timeout, this,
            qOverload<>(&MediaRequestsCollector::settle));
}

std::vector<MediaRequest> MediaRequestsCollector::mediaRequests()
{
    return kept([](const NetworkRequest &request) {
        return request.worth == NetworkRequest::Worth::Media;
    });
}

std::vector<MediaRequest> MediaRequestsCollector::partsOf(const std::string &pageUrl)
{
    return kept([&pageUrl](const NetworkRequest &request) {
        return request.worth == NetworkRequest::Worth::Part && request.pageUrl == pageUrl;
    });
}

template <typename Predicate>
std::vector<MediaRequest> MediaRequestsCollector::kept(Predicate predicate)
{
    settle();
    Requests requests = m_requests->requests();
    std::erase_if(requests, [&](const NetworkRequest *request) { return !predicate(*request); });
    std::sort(requests.begin(), requests.end(), isOlder);
    std::vector<MediaRequest> found;
    found.reserve(requests.size());
    for (const NetworkRequest *request : requests)
        found.push_back(toMediaRequest(*request));
    return found;
}

void MediaRequestsCollector::onPageChanged(const std::string &pageUrl)
{
    m_changedPages.touch(pageUrl);
    if (!m_timer->isActive())
        m_timer->start(settleMs);
}

void MediaRequestsCollector::settle()
{
    m_timer->stop();
    const auto pages = m_changedPages.takeAll();
    if (pages.empty())
        return;
    std::unordered_map<std::string_view, Requests> answeredOfPage;
    for (const auto &[pageUrl, nothing] : pages)
        answeredOfPage.try_emplace(pageUrl);
    for (const NetworkRequest *request : m_requests->requests()) {
        if (request->worth == NetworkRequest::Worth::Ordinary || !isAnsweredWell(*request))
            continue;
        if (const auto page = answeredOfPage.find(request->pageUrl); page != answeredOfPage.end())
            page->second.push_back(request);
    }
    for (const auto &[pageUrl, answered] : answeredOfPage)
        settlePage(answered);
    m_changedPages.takeAll(); // requests that were dropped meanwhile belong to these pages
    m_timer->stop();
    for (const auto &[pageUrl, nothing] : pages)
        Q_EMIT pageSettled(pageUrl);
}

void MediaRequestsCollector::settlePage(const Requests &answered)
{
    using Worth = NetworkRequest::Worth;
    const Requests latest = latestMedia(answered);
    StreamSegments streams;
    for (const NetworkRequest *request : latest) {
        if (request->kind == MediaKind::StreamMediaKind)
            streams.addPlaylist(*request);
    }
    size_t mediaLeft = maxMedia;
    size_t partsLeft = maxParts;
    // From the newest to the oldest, playlists first: without them, segments would count as media.
    for (const bool isStream : {true, false}) {
        for (auto next = latest.rbegin(); next != latest.rend(); ++next) {
            const NetworkRequest &request = **next;
            if ((request.kind == MediaKind::StreamMediaKind) != isStream)
                continue;
            const bool isPart = isStream && (request.isKnownPart || streams.isPartOfOther(request));
            Worth worth = Worth::Ordinary;
            if (isPart && partsLeft > 0) {
                --partsLeft;
                worth = Worth::Part;
            } else if (!isPart && mediaLeft > 0 && (isStream || !streams.isSegment(request.url))) {
                --mediaLeft;
                worth = Worth::Media;
            }
            m_requests->judge(request.id, worth, request.kind);
        }
    }
}

MediaRequestsCollector::Requests MediaRequestsCollector::latestMedia(const Requests &answered)
{
    std::unordered_map<std::string_view, const NetworkRequest *> byUrl;
    for (const NetworkRequest *request : answered) {
        if (!request->isKept()) {
            const HttpHeaderBlock headers(request->responseHeaders);
            const MediaKind kind = mediaKindOf(request->url, headers);
            const bool isMedia = kind != MediaKind::NoMediaKind
                && sizeOfMedia(*request, kind, headers).value_or(minSize) >= minSize;
            m_requests->judge(
                request->id,
                isMedia ? NetworkRequest::Worth::Unjudged : NetworkRequest::Worth::Ordinary, kind);
            if (!isMedia)
                continue;
        }
        const auto [known, added] = byUrl.try_emplace(withoutFragment(request->url), request);
        if (added)
            continue;
        // Players fetch files in ranges, and reload the playlist of a live stream periodically.
        const NetworkRequest *older = known->second;
        const NetworkRequest *later = request;
        if (isOlder(later, older))
            std::swap(older, later);
        // Until then it may fail; then the older one counts.
        if (later->state == NetworkRequest::State::Completed) {
            byUrl.erase(known);
            m_requests->replace(older->id, later->id,
                                std::max(sizeOfMedia(*older), sizeOfMedia(*later)));
            byUrl.emplace(withoutFragment(later->url), later);
        } else {
            known->second = later;
        }
    }
    Requests latest;
    latest.reserve(byUrl.size());
    for (const auto &[url, request] : byUrl)
        latest.push_back(request);
    std::sort(latest.begin(), latest.end(), isOlder);
    return latest;
}

std::optional<MediaRequest> MediaRequestsCollector::request(const std::string &requestId) const
{
    const NetworkRequest *const request = m_requests->request(requestId);
    return request ? std::optional(toMediaRequest(*request)) : std::nullopt;
}

std::optional<MediaRequest> MediaRequestsCollector::requestOf(const std::string &url,
                                                              const std::string &pageUrl) const
{
    const auto rank = [&pageUrl](const NetworkRequest &request) {
        return std::tuple(isAnsweredWell(request), request.pageUrl == pageUrl, request.number);
    };
    const NetworkRequest *best = nullptr;
    for (const NetworkRequest *request : m_requests->requests()) {
        if ((request->url == url || request->originalUrl == url)
            && (!best || rank(*best) < rank(*request)))
            best = request;
    }
    return best ? std::optional(toMediaRequest(*best)) : std::nullopt;
}
