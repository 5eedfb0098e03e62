#include "browsertabsrequeststracker.h"

#include "pageurl.h"

BrowserTabsRequestsTracker::BrowserTabsRequestsTracker(QObject *parent) : QObject(parent) { }

void BrowserTabsRequestsTracker::tabNavigated(const std::string &fromUrl, const std::string &toUrl)
{
    if (fromUrl != toUrl && withoutFragment(fromUrl) == withoutFragment(toUrl)) {
        tabUrlChanged(fromUrl, toUrl);
        return;
    }
    leave(fromUrl);
    if (!toUrl.empty())
        ++m_tabsOfPage.touch(toUrl);
}

void BrowserTabsRequestsTracker::tabClosed(const std::string &url) { leave(url); }

void BrowserTabsRequestsTracker::tabUrlChanged(const std::string &fromUrl, const std::string &toUrl)
{
    if (fromUrl == toUrl || fromUrl.empty() || toUrl.empty())
        return;
    const int *const tabs = m_tabsOfPage.find(fromUrl);
    // If another tab still shows the old URL, it is unknown which tab made which request: then the
    // requests stay with the old URL.
    const bool isShownElsewhere = tabs && *tabs > 1;
    if (isShownElsewhere)
        --m_tabsOfPage.touch(fromUrl);
    else
        m_tabsOfPage.remove(fromUrl);
    ++m_tabsOfPage.touch(toUrl);
    if (!isShownElsewhere)
        Q_EMIT pageRenamed(fromUrl, toUrl);
}

void BrowserTabsRequestsTracker::leave(const std::string &url)
{
    // A tab without a web page does not affect the requests that belong to no page.
    if (url.empty())
        return;
    if (const int *const tabs = m_tabsOfPage.find(url); tabs && *tabs > 1) {
        --m_tabsOfPage.touch(url);
        return;
    }
    m_tabsOfPage.remove(url);
    Q_EMIT pageLeft(url);
}
