#pragma once

#include "recenturls.h"

#include <QObject>

#include <string>

/**
 * Counts the tabs that show each page, to notify when the last of them leaves it, and when its URL
 * changes.
 *
 * The browser identifies pages by their URL only. A page whose navigation was not reported, or that
 * RecentUrls dropped, counts as shown in one tab. Belongs to one thread.
 */
class BrowserTabsRequestsTracker : public QObject {
    Q_OBJECT
public:
    explicit BrowserTabsRequestsTracker(QObject *parent = nullptr);

    /// A tab navigated from one page to another; the first URL is empty for a new tab. URLs that
    /// differ only in their fragments are the same page; the same URL means a reload.
    void tabNavigated(const std::string &fromUrl, const std::string &toUrl);
    void tabClosed(const std::string &url);
    /// The page of a tab changed its URL without a navigation.
    void tabUrlChanged(const std::string &fromUrl, const std::string &toUrl);

Q_SIGNALS:
    /// No tab shows the page any more.
    void pageLeft(const std::string &url);
    void pageRenamed(const std::string &fromUrl, const std::string &toUrl);

private:
    void leave(const std::string &url);

    RecentUrls<int> m_tabsOfPage;
};
