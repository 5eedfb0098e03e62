#pragma once

#include "recenturls.h"

#include <QObject>

#include <string>

/**
 * How many tabs show a page, to tell when the last of them leaves it or it gets another URL.
 *
 * The browser names pages by their URL only. A page that was never navigated to while the browser
 * told of it, or that RecentUrls dropped, counts as shown in one tab. Belongs to one thread.
 */
class BrowserTabsRequestsTracker : public QObject {
    Q_OBJECT
public:
    explicit BrowserTabsRequestsTracker(QObject *parent = nullptr);

    /// A tab went from one page to another; the first URL is empty for a new tab. URLs that differ
    /// in their fragments are places in one page, the same URL is the page loaded again.
    void tabNavigated(const std::string &fromUrl, const std::string &toUrl);
    void tabClosed(const std::string &url);
    /// The page of a tab changed its URL without being left.
    void tabUrlChanged(const std::string &fromUrl, const std::string &toUrl);

Q_SIGNALS:
    /// No tab shows the page any more.
    void pageLeft(const std::string &url);
    void pageRenamed(const std::string &fromUrl, const std::string &toUrl);

private:
    void leave(const std::string &url);

    RecentUrls<int> m_tabsOfPage;
};
