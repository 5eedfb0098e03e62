#pragma once

#include <QObject>

#include <cstddef>
#include <list>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

/**
 * Which requests belong to which page, and how many tabs show a page. The requests of a page are
 * forgotten when the last of its tabs goes elsewhere or is closed.
 *
 * The browser names pages by their URL only. A page that was never navigated to while the browser
 * told of it counts as shown in one tab. Belongs to one thread.
 */
class BrowserTabsRequestsTracker : public QObject {
    Q_OBJECT
public:
    /// More pages than this are not remembered; the one heard of longest ago is forgotten.
    static constexpr size_t maxPages = 2000;

    explicit BrowserTabsRequestsTracker(QObject *parent = nullptr);

    /// A request was made on a page; a request that was on another page is moved.
    void addRequest(const std::string &pageUrl, const std::string &requestId);
    void removeRequest(const std::string &requestId);

    /// A tab went from one page to another; the first URL is empty for a new tab. URLs that differ
    /// in their fragments are places in one page, the same URL is the page loaded again.
    void tabNavigated(const std::string &fromUrl, const std::string &toUrl);
    void tabClosed(const std::string &url);
    /// The page of a tab changed its URL without being left: its requests follow.
    void tabUrlChanged(const std::string &fromUrl, const std::string &toUrl);

    std::vector<std::string> requestsOf(const std::string &pageUrl) const;
    size_t pagesCount() const { return m_byUrl.size(); }

Q_SIGNALS:
    /// The request's page is gone.
    void requestAbandoned(const std::string &requestId);
    /// The requests of a page now belong to another URL.
    void requestsMoved(const std::string &fromUrl, const std::string &toUrl);

private:
    struct Page {
        std::string url;
        std::unordered_set<std::string> requests;
        /// Tabs that are known to show it; 0 if it was open before the browser told of it.
        int tabs = 0;
    };
    using Pages = std::list<Page>;

    Pages::iterator touch(const std::string &url);
    void leave(const std::string &url);
    void forget(Pages::iterator page);

    Pages m_oldestFirst;
    std::unordered_map<std::string, Pages::iterator> m_byUrl;
    std::unordered_map<std::string, Pages::iterator> m_pageOfRequest;
};
