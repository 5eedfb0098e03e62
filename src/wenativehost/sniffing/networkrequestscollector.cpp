#include "networkrequestscollector.h"

#include "pmxkovbhipctasknetworkrequestnotification.h"

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

/// An assignment would keep the capacity of a longer text, which is not counted.
void assign(std::string &text, const std::string &by) { std::string(by).swap(text); }

/// Browsers keep the id across redirects and HTTP authentication, and reuse it after the end of the
/// request, which they do not always report.
bool goesOn(const NetworkRequest &request,
            const pmxKovBhIpcTaskNetworkRequestNotification &notification)
{
    return !request.isFinished() && request.url == notification.url;
}

/// Whether the notification changes anything in the request.
bool merge(NetworkRequest &request, const pmxKovBhIpcTaskNetworkRequestNotification &notification)
{
    using State = NetworkRequest::State;
    if (notification.type == "request") {
        request.state = State::Sent;
        request.status = 0;
        assign(request.responseHeaders, {});
        request.playlist.reset();
        assign(request.pageUrl, notification.srcTabUrl);
        assign(request.method, notification.data);
        assign(request.requestHeaders, notification.requestHeaders);
    } else if (notification.type == "response") {
        request.state = State::Answered;
        request.status = toStatus(notification.data);
        assign(request.responseHeaders, notification.responseHeaders);
    } else if (notification.type == "redirect") {
        // The headers of a redirect do not describe the resource.
        request.state = State::Sent;
        request.status = 0;
        assign(request.url, notification.data);
        assign(request.responseHeaders, {});
    } else if (notification.type == "playlist") {
        request.playlist = std::make_shared<Playlist>(notification.data, request.url);
    } else if (notification.type == "part") {
        request.isKnownPart = true;
    } else if (notification.type == "completed") {
        request.state = State::Completed;
    } else if (notification.type == "failed") {
        request.state = State::Failed;
    } else {
        return false;
    }
    return true;
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
    for (Requests &list : m_lists) {
        for (NetworkRequest &request : list) {
            if (request.pageUrl != fromUrl)
                continue;
            m_textBytes += toUrl.size() - fromUrl.size();
            assign(request.pageUrl, toUrl);
        }
    }
    Q_EMIT pageChanged(fromUrl);
    Q_EMIT pageChanged(toUrl);
    keepWithinBounds();
}

void NetworkRequestsCollector::forgetPage(const std::string &pageUrl)
{
    forgetIf([&pageUrl](const NetworkRequest &request) { return request.pageUrl == pageUrl; });
}

void NetworkRequestsCollector::forgetUrl(const std::string &url)
{
    forgetIf([&url](const NetworkRequest &request) {
        return request.url == url || request.originalUrl == url;
    });
}

void NetworkRequestsCollector::judge(const std::string &requestId, NetworkRequest::Worth worth,
                                     MediaKind kind)
{
    const auto request = m_byId.at(requestId);
    Requests &from = listOf(*request);
    request->worth = worth;
    request->kind = kind;
    if (&from != &listOf(*request))
        moveToItsList(from, request);
}

void NetworkRequestsCollector::replace(const std::string &olderId, const std::string &laterId,
                                       std::optional<quint64> knownSize)
{
    const auto older = m_byId.at(olderId);
    const auto later = m_byId.at(laterId);
    later->knownSize = knownSize;
    later->isKnownPart |= older->isKnownPart;
    if (!later->playlist)
        later->playlist.swap(older->playlist); // its bytes stay counted
    forget(listOf(*older), older);
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
    for (const Requests &list : m_lists) {
        for (const NetworkRequest &request : list) {
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
    Requests &list = listOf(request);
    const auto added = list.insert(list.end(), std::move(request));
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
    if (!request->isKept() || (notification.type != "completed" && notification.type != "playlist"))
        request->worth = NetworkRequest::Worth::Unjudged;
    request->changedMs = m_clock.monotonicMs();
    m_textBytes += request->textBytes() - textBytes;
    moveToItsList(from, request);
    Q_EMIT pageChanged(request->pageUrl);
    if (request->textBytes() > maxTextBytes)
        forget(listOf(*request), request);
}

void NetworkRequestsCollector::moveToItsList(Requests &from, Requests::iterator request)
{
    Requests &to = listOf(*request);
    to.splice(to.end(), from, request);
}

NetworkRequestsCollector::Requests &NetworkRequestsCollector::listOf(const NetworkRequest &request)
{
    auto &[finished, unfinished, kept] = m_lists;
    if (request.isKept())
        return kept;
    return request.isFinished() ? finished : unfinished;
}

bool NetworkRequestsCollector::isTooOld(const NetworkRequest &request) const
{
    return !request.isKept() && m_clock.monotonicMs() - request.changedMs > maxAgeMs;
}

void NetworkRequestsCollector::forget(Requests &list, Requests::iterator request)
{
    m_textBytes -= request->textBytes();
    m_byId.erase(request->id);
    if (request->isKept())
        Q_EMIT pageChanged(request->pageUrl);
    list.erase(request);
}

template <typename Predicate> void NetworkRequestsCollector::forgetIf(Predicate predicate)
{
    for (Requests &list : m_lists) {
        for (auto request = list.begin(); request != list.end();) {
            const auto next = std::next(request);
            if (predicate(*request))
                forget(list, request);
            request = next;
        }
    }
}

void NetworkRequestsCollector::keepWithinBounds()
{
    for (Requests &list : m_lists) {
        while (!list.empty()
               && (isTooOld(list.front()) || m_byId.size() > maxRequests
                   || m_textBytes > maxTextBytes))
            forget(list, list.begin());
    }
}
