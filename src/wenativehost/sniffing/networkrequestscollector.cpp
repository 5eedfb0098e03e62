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
    if (notification.type == "request") {
        // Browsers keep the id through redirects, and use it again after the request's end.
        if (known != m_byId.end() && known->second->isFinished())
            forget(m_finished, known->second);
        else if (known != m_byId.end()) {
            update(known->second, notification);
            keepWithinBounds();
            return;
        }
        begin(notification);
    } else if (known != m_byId.end()) {
        update(known->second, notification);
    }
    keepWithinBounds();
}

void NetworkRequestsCollector::setPageUrl(const std::string &requestId, const std::string &pageUrl)
{
    const auto known = m_byId.find(requestId);
    if (known == m_byId.end())
        return;
    NetworkRequest &request = *known->second;
    m_textBytes += pageUrl.size() - request.pageUrl.size();
    request.pageUrl = pageUrl;
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
            if (request->url == url)
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
    m_textBytes -= request->textBytes();
    if (notification.type == "request") {
        request->state = NetworkRequest::State::Sent;
        request->url = notification.url;
        request->pageUrl = notification.srcTabUrl;
        request->method = notification.data;
        request->requestHeaders = notification.requestHeaders;
    } else if (notification.type == "response") {
        request->state = NetworkRequest::State::Answered;
        request->status = toStatus(notification.data);
        request->responseHeaders = notification.responseHeaders;
    } else if (notification.type == "redirect") {
        // The headers of the way station say nothing of the resource.
        request->state = NetworkRequest::State::Sent;
        request->url = notification.data;
        request->responseHeaders.clear();
        request->status = 0;
    } else if (notification.type == "playlist") {
        request->playlist = notification.data;
    } else if (notification.type == "completed") {
        request->state = NetworkRequest::State::Completed;
    } else if (notification.type == "failed") {
        request->state = NetworkRequest::State::Failed;
    }
    request->changedMs = m_clock.monotonicMs();
    m_textBytes += request->textBytes();
    Requests &to = listOf(*request);
    to.splice(to.end(), from, request);
}

NetworkRequestsCollector::Requests &NetworkRequestsCollector::listOf(const NetworkRequest &request)
{
    return request.isFinished() ? m_finished : m_unfinished;
}

bool NetworkRequestsCollector::isTooOld(const NetworkRequest &request) const
{
    return m_clock.monotonicMs() - request.changedMs > maxAgeMs;
}

void NetworkRequestsCollector::forget(Requests &list, Requests::iterator request)
{
    const std::string id = request->id;
    m_textBytes -= request->textBytes();
    m_byId.erase(id);
    list.erase(request);
    Q_EMIT requestForgotten(id);
}

void NetworkRequestsCollector::keepWithinBounds()
{
    for (Requests *list : {&m_finished, &m_unfinished}) {
        while (!list->empty()
               && (isTooOld(list->front()) || m_byId.size() > maxRequests
                   || m_textBytes > maxTextBytes))
            forget(*list, list->begin());
    }
}
