#include "networkrequestscollector.h"

#include "httpheaderblock.h"
#include "mediakind.h"
#include "pmxkovbhipctasknetworkrequestnotification.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <vector>

namespace {

int toStatus(const std::string &text)
{
    int status = 0;
    std::from_chars(text.data(), text.data() + text.size(), status);
    return status;
}

/// An assignment would keep the memory of a longer text, which nobody counts.
void replace(std::string &text, const std::string &by) { std::string(by).swap(text); }

/// Browsers keep the id through redirects and when they ask for a password, and use it again after
/// the request's end, of which they do not always tell.
bool goesOn(const NetworkRequest &request,
            const pmxKovBhIpcTaskNetworkRequestNotification &notification)
{
    return !request.isFinished() && request.url == notification.url;
}

/// Whether the notification says anything of the request.
bool merge(NetworkRequest &request, const pmxKovBhIpcTaskNetworkRequestNotification &notification)
{
    using State = NetworkRequest::State;
    if (notification.type == "request") {
        request.state = State::Sent;
        request.status = 0;
        replace(request.responseHeaders, {});
        replace(request.playlist, {});
        replace(request.pageUrl, notification.srcTabUrl);
        replace(request.method, notification.data);
        replace(request.requestHeaders, notification.requestHeaders);
    } else if (notification.type == "response") {
        request.state = State::Answered;
        request.status = toStatus(notification.data);
        replace(request.responseHeaders, notification.responseHeaders);
    } else if (notification.type == "redirect") {
        // The headers of the way station say nothing of the resource.
        request.state = State::Sent;
        request.status = 0;
        replace(request.url, notification.data);
        replace(request.responseHeaders, {});
    } else if (notification.type == "playlist") {
        replace(request.playlist, notification.data);
    } else if (notification.type == "completed") {
        request.state = State::Completed;
    } else if (notification.type == "failed") {
        request.state = State::Failed;
    } else {
        return false;
    }
    return true;
}

bool isPlaylist(const NetworkRequest &request)
{
    return request.state == NetworkRequest::State::Completed
        && mediaKindOf(request.url, HttpHeaderBlock(request.responseHeaders))
        == MediaKind::StreamMediaKind;
}

/// Players of what is being broadcast fetch its playlist every few seconds.
bool takesThePlaceOf(const NetworkRequest &later, const NetworkRequest &playlist)
{
    return later.number > playlist.number && later.url == playlist.url
        && later.state == playlist.state && later.status == playlist.status
        && (playlist.playlist.empty() || !later.playlist.empty());
}

} // namespace

NetworkRequestsCollector::NetworkRequestsCollector(QObject *parent, QtClock &clock)
    : QObject(parent), m_clock(clock)
{
}

void NetworkRequestsCollector::process(
    const pmxKovBhIpcTaskNetworkRequestNotification &notification)
{
    if (notification.requestId.empty())
        return;
    const auto known = m_byId.find(notification.requestId);
    const bool isKnown = known != m_byId.end();
    if (notification.type == "request" && !(isKnown && goesOn(*known->second, notification))) {
        if (isKnown)
            forget(listOf(*known->second), known->second);
        begin(notification);
    } else if (isKnown) {
        update(known->second, notification);
    }
    keepWithinBounds();
}

void NetworkRequestsCollector::changePageUrl(const std::string &fromUrl, const std::string &toUrl)
{
    for (Requests *list : {&m_finished, &m_unfinished}) {
        for (NetworkRequest &request : *list) {
            if (request.pageUrl != fromUrl)
                continue;
            m_textBytes += toUrl.size() - fromUrl.size();
            replace(request.pageUrl, toUrl);
        }
    }
    keepWithinBounds();
}

void NetworkRequestsCollector::forget(const std::string &requestId)
{
    if (const auto known = m_byId.find(requestId); known != m_byId.end())
        forget(listOf(*known->second), known->second);
}

void NetworkRequestsCollector::forgetUrl(const std::string &url)
{
    for (Requests *list : {&m_finished, &m_unfinished}) {
        for (auto request = list->begin(); request != list->end();) {
            const auto next = std::next(request);
            if (request->url == url || request->originalUrl == url)
                forget(*list, request);
            request = next;
        }
    }
}

const NetworkRequest *NetworkRequestsCollector::request(const std::string &requestId) const
{
    const auto known = m_byId.find(requestId);
    if (known == m_byId.end() || isTooOld(*known->second))
        return nullptr;
    return &*known->second;
}

std::vector<const NetworkRequest *> NetworkRequestsCollector::requests() const
{
    std::vector<const NetworkRequest *> found;
    found.reserve(m_byId.size());
    for (const Requests *list : {&m_finished, &m_unfinished}) {
        for (const NetworkRequest &request : *list) {
            if (!isTooOld(request))
                found.push_back(&request);
        }
    }
    return found;
}

void NetworkRequestsCollector::begin(const pmxKovBhIpcTaskNetworkRequestNotification &notification)
{
    NetworkRequest request;
    request.id = notification.requestId;
    request.url = notification.url;
    request.originalUrl = notification.url;
    request.number = ++m_lastNumber;
    m_textBytes += request.textBytes();
    const auto added = m_unfinished.insert(m_unfinished.end(), std::move(request));
    m_byId.emplace(added->id, added);
    update(added, notification);
}

void NetworkRequestsCollector::update(Requests::iterator request,
                                      const pmxKovBhIpcTaskNetworkRequestNotification &notification)
{
    Requests &from = listOf(*request);
    const size_t textBytes = request->textBytes();
    if (!merge(*request, notification))
        return;
    request->changedMs = m_clock.monotonicMs();
    m_textBytes += request->textBytes() - textBytes;
    Requests &to = listOf(*request);
    to.splice(to.end(), from, request);
    if (request->textBytes() > maxTextBytes)
        forget(to, request);
}

NetworkRequestsCollector::Requests &NetworkRequestsCollector::listOf(const NetworkRequest &request)
{
    return request.isFinished() ? m_finished : m_unfinished;
}

bool NetworkRequestsCollector::isTooOld(qint64 changedMs) const
{
    return m_clock.monotonicMs() - changedMs > maxAgeMs;
}

bool NetworkRequestsCollector::isTooOld(const NetworkRequest &request) const
{
    return isTooOld(request.changedMs) && isTooOld(changedMs(request));
}

qint64 NetworkRequestsCollector::changedMs(const NetworkRequest &request) const
{
    qint64 latestMs = request.changedMs;
    if (!isPlaylist(request))
        return latestMs;
    for (const Requests *list : {&m_finished, &m_unfinished}) {
        for (const NetworkRequest &other : *list) {
            if (other.pageUrl != request.pageUrl)
                continue;
            if (takesThePlaceOf(other, request))
                return request.changedMs;
            latestMs = std::max(latestMs, other.changedMs);
        }
    }
    return latestMs;
}

void NetworkRequestsCollector::forget(Requests &list, Requests::iterator request)
{
    const std::string id = request->id;
    m_textBytes -= request->textBytes();
    m_byId.erase(id);
    list.erase(request);
    Q_EMIT requestForgotten(id);
}

void NetworkRequestsCollector::moveToChanged(qint64 changedMs)
{
    const auto request = m_finished.begin();
    request->changedMs = changedMs;
    auto next = m_finished.end();
    while (std::prev(next)->changedMs > changedMs)
        --next;
    m_finished.splice(next, m_finished, request);
}

void NetworkRequestsCollector::keepWithinBounds()
{
    while (!m_finished.empty() && isTooOld(m_finished.front().changedMs)) {
        if (const qint64 changed = changedMs(m_finished.front()); !isTooOld(changed))
            moveToChanged(changed);
        else
            forget(m_finished, m_finished.begin());
    }
    while (!m_unfinished.empty() && isTooOld(m_unfinished.front().changedMs))
        forget(m_unfinished, m_unfinished.begin());
    for (Requests *list : {&m_finished, &m_unfinished}) {
        while (!list->empty() && (m_byId.size() > maxRequests || m_textBytes > maxTextBytes))
            forget(*list, list->begin());
    }
}
