#include "browsertabsrequeststracker.h"

#include "pageurl.h"

BrowserTabsRequestsTracker::BrowserTabsRequestsTracker(QObject *parent) : QObject(parent) { }

void BrowserTabsRequestsTracker::addRequest(const std::string &pageUrl,
                                            const std::string &requestId)
{
    const auto known = m_pageOfRequest.find(requestId);
    if (known != m_pageOfRequest.end() && known->second->url != pageUrl)
        removeRequest(requestId);
    const auto page = touch(pageUrl);
    m_pageOfRequest.emplace(requestId, page);
    page->requests.insert(requestId);
}

void BrowserTabsRequestsTracker::removeRequest(const std::string &requestId)
{
    const auto known = m_pageOfRequest.find(requestId);
    if (known == m_pageOfRequest.end())
        return;
    const auto page = known->second;
    page->requests.erase(requestId);
    m_pageOfRequest.erase(known);
    if (page->requests.empty() && page->tabs <= 0)
        forget(page);
}

void BrowserTabsRequestsTracker::tabNavigated(const std::string &fromUrl, const std::string &toUrl)
{
    if (fromUrl != toUrl && withoutFragment(fromUrl) == withoutFragment(toUrl)) {
        tabUrlChanged(fromUrl, toUrl);
        return;
    }
    leave(fromUrl);
    if (!toUrl.empty())
        ++touch(toUrl)->tabs;
}

void BrowserTabsRequestsTracker::tabClosed(const std::string &url) { leave(url); }

void BrowserTabsRequestsTracker::tabUrlChanged(const std::string &fromUrl, const std::string &toUrl)
{
    const auto known = m_byUrl.find(fromUrl);
    if (known == m_byUrl.end() || fromUrl == toUrl || toUrl.empty())
        return;
    const auto from = known->second;
    // Another tab may show the old URL still, and nobody knows which of them made a request: they
    // stay where they are then.
    if (from->tabs > 1) {
        --from->tabs;
        ++touch(toUrl)->tabs;
        return;
    }
    m_byUrl.erase(fromUrl);
    if (const auto [there, added] = m_byUrl.try_emplace(toUrl, from); added) {
        from->url = toUrl;
    } else {
        const auto to = there->second;
        to->tabs += from->tabs;
        for (const std::string &requestId : from->requests)
            m_pageOfRequest[requestId] = to;
        to->requests.merge(from->requests);
        m_oldestFirst.erase(from);
    }
    touch(toUrl);
    // Last, since whoever hears of it may remove requests.
    Q_EMIT requestsMoved(fromUrl, toUrl);
}

std::vector<std::string> BrowserTabsRequestsTracker::requestsOf(const std::string &pageUrl) const
{
    const auto known = m_byUrl.find(pageUrl);
    if (known == m_byUrl.end())
        return {};
    return {known->second->requests.begin(), known->second->requests.end()};
}

BrowserTabsRequestsTracker::Pages::iterator
BrowserTabsRequestsTracker::touch(const std::string &url)
{
    if (const auto known = m_byUrl.find(url); known != m_byUrl.end()) {
        m_oldestFirst.splice(m_oldestFirst.end(), m_oldestFirst, known->second);
        return known->second;
    }
    const auto page = m_oldestFirst.insert(m_oldestFirst.end(), Page{url, {}, 0});
    m_byUrl.emplace(url, page);
    if (m_byUrl.size() > maxPages)
        forget(m_oldestFirst.begin());
    return page;
}

void BrowserTabsRequestsTracker::leave(const std::string &url)
{
    const auto known = m_byUrl.find(url);
    // A tab without a page of the web says nothing of the requests that belong to no page.
    if (known == m_byUrl.end() || url.empty())
        return;
    if (--known->second->tabs <= 0)
        forget(known->second);
}

void BrowserTabsRequestsTracker::forget(Pages::iterator page)
{
    const std::unordered_set<std::string> requests = std::move(page->requests);
    m_byUrl.erase(page->url);
    m_oldestFirst.erase(page);
    for (const std::string &requestId : requests)
        m_pageOfRequest.erase(requestId);
    for (const std::string &requestId : requests)
        Q_EMIT requestAbandoned(requestId);
}
