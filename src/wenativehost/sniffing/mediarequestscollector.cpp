#include "mediarequestscollector.h"

#include "httpheaderblock.h"
#include "mediakind.h"
#include "networkrequestscollector.h"
#include "pageurl.h"
#include "streamsegments.h"

#include <algorithm>
#include <map>
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
    // Content-Length counts the bytes on the wire, compressed where they are.
    return headers.contains("content-encoding") ? std::nullopt : headers.contentLength();
}

MediaRequest toMediaRequest(const NetworkRequest &request)
{
    const HttpHeaderBlock headers(request.responseHeaders);
    return {request, mediaKindOf(request.url, headers), sizeOfResource(request, headers),
            headers.fileName().toStdString()};
}

bool isAnsweredWell(const NetworkRequest &request)
{
    // What asks for leave to ask another server gets an answer without the resource.
    return request.method != "OPTIONS"
        && (request.state == NetworkRequest::State::Answered
            || request.state == NetworkRequest::State::Completed)
        && ((request.status >= 200 && request.status < 300 && request.status != 204)
            || request.status == 304);
}

/// Keeps what is newest of the parts of one resource, and the size if any of them knew it.
void mergeParts(MediaRequest &known, MediaRequest &&part)
{
    const auto size = std::max(known.size, part.size);
    if (part.request.number > known.request.number)
        known = std::move(part);
    known.size = size;
}

} // namespace

MediaRequestsCollector::MediaRequestsCollector(QSharedPointer<NetworkRequestsCollector> requests,
                                               QObject *parent)
    : QObject(parent), m_requests(std::move(requests))
{
}

std::vector<MediaRequest> MediaRequestsCollector::mediaRequests() const
{
    std::map<std::pair<std::string, std::string>, MediaRequest> byPageAndUrl;
    std::unordered_map<std::string, StreamSegments> streamsOfPage;
    for (const NetworkRequest *request : m_requests->requests()) {
        if (!isAnsweredWell(*request))
            continue;
        MediaRequest media = toMediaRequest(*request);
        if (media.kind == MediaKind::NoMediaKind)
            continue;
        // Of a playlist that is fetched over and over, any of the requests may have the text.
        if (media.kind == MediaKind::StreamMediaKind)
            streamsOfPage[request->pageUrl].addPlaylist(*request);
        const auto [known, added] = byPageAndUrl.try_emplace(
            std::pair(request->pageUrl, std::string(withoutFragment(request->url))), media);
        if (!added)
            mergeParts(known->second, std::move(media));
    }

    std::vector<MediaRequest> found;
    for (auto &[pageAndUrl, media] : byPageAndUrl) {
        const StreamSegments &streams = streamsOfPage[pageAndUrl.first];
        const bool isPiece = media.kind == MediaKind::StreamMediaKind
            ? streams.isPartOfOther(media.request)
            : streams.isSegment(media.request.url) || media.size.value_or(minSize) < minSize;
        if (!isPiece)
            found.push_back(std::move(media));
    }
    std::sort(found.begin(), found.end(), [](const MediaRequest &a, const MediaRequest &b) {
        return a.request.number < b.request.number;
    });
    return found;
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
