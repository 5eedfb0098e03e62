#include "browsertabsrequeststracker.h"
#include "networkrequestscollector.h"
#include "pmxkovbhipctasknetworkrequestnotification.h"
#include "turnedclock.h"

#include <QSignalSpy>
#include <QTest>

#include <random>
#include <set>

namespace {

pmxKovBhIpcTaskNetworkRequestNotification notification(const std::string &type,
                                                       const std::string &requestId,
                                                       const std::string &data = {},
                                                       const std::string &headers = {})
{
    pmxKovBhIpcTaskNetworkRequestNotification result;
    result.type = type;
    result.requestId = requestId;
    result.url = "http://host/" + requestId;
    result.srcTabUrl = "http://page/";
    result.data = data;
    (type == "request" ? result.requestHeaders : result.responseHeaders) = headers;
    return result;
}

} // namespace

class tst_NetworkRequestsCollector : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void mergesTheNotificationsOfOneRequest();
    void followsRedirects();
    void takesAReusedIdForANewRequest();
    void ignoresWhatItDoesNotKnow();
    void forgetsFinishedOnesFirst();
    void forgetsTheOld();
    void staysWithinItsBounds();
    void tabsShareAPage();
    void requestsFollowAChangedUrl();
};

void tst_NetworkRequestsCollector::mergesTheNotificationsOfOneRequest()
{
    NetworkRequestsCollector collector;
    collector.process(notification("request", "1", "POST", "Cookie: a=b\r\n"));
    collector.process(notification("response", "1", "206", "Content-Type: video/mp4\r\n"));
    collector.process(notification("completed", "1"));

    const NetworkRequest *const request = collector.request("1");
    QVERIFY(request);
    QCOMPARE(request->url, "http://host/1");
    QCOMPARE(request->pageUrl, "http://page/");
    QCOMPARE(request->method, "POST");
    QCOMPARE(request->requestHeaders, "Cookie: a=b\r\n");
    QCOMPARE(request->responseHeaders, "Content-Type: video/mp4\r\n");
    QCOMPARE(request->status, 206);
    QCOMPARE(request->state, NetworkRequest::State::Completed);
}

void tst_NetworkRequestsCollector::followsRedirects()
{
    NetworkRequestsCollector collector;
    collector.process(notification("request", "1", "GET", "Cookie: first\r\n"));
    collector.process(notification("response", "1", "302", "Location: http://b/\r\n"));
    collector.process(notification("redirect", "1", "http://b/"));
    QCOMPARE(collector.request("1")->url, "http://b/");
    QCOMPARE(collector.request("1")->status, 0);
    QVERIFY(collector.request("1")->responseHeaders.empty());

    // Browsers send the request anew under the same id.
    auto second = notification("request", "1", "GET", "Cookie: second\r\n");
    second.url = "http://b/";
    collector.process(second);
    QCOMPARE(collector.size(), size_t(1));
    QCOMPARE(collector.request("1")->requestHeaders, "Cookie: second\r\n");
}

void tst_NetworkRequestsCollector::takesAReusedIdForANewRequest()
{
    NetworkRequestsCollector collector;
    collector.process(notification("request", "1"));
    collector.process(notification("response", "1", "200", "Content-Type: video/mp4\r\n"));
    collector.process(notification("failed", "1"));
    const quint64 first = collector.request("1")->number;
    collector.process(notification("request", "1"));
    QCOMPARE(collector.size(), size_t(1));
    QVERIFY(collector.request("1")->number > first);
    QVERIFY(collector.request("1")->responseHeaders.empty());
    QCOMPARE(collector.request("1")->state, NetworkRequest::State::Sent);
}

void tst_NetworkRequestsCollector::ignoresWhatItDoesNotKnow()
{
    NetworkRequestsCollector collector;
    collector.process(notification("response", "1", "200"));
    collector.process(notification("strange", "1"));
    collector.process(notification("request", ""));
    QCOMPARE(collector.size(), size_t(0));
    collector.process(notification("request", "1"));
    collector.process(notification("response", "1", "no number"));
    QCOMPARE(collector.request("1")->status, 0);
}

void tst_NetworkRequestsCollector::forgetsFinishedOnesFirst()
{
    NetworkRequestsCollector collector;
    QSignalSpy forgotten(&collector, &NetworkRequestsCollector::requestForgotten);
    for (size_t i = 0; i < NetworkRequestsCollector::maxRequests; ++i)
        collector.process(notification("request", std::to_string(i)));
    collector.process(notification("completed", "700"));
    collector.process(notification("completed", "500"));
    for (const char *id : {"a", "b", "c"})
        collector.process(notification("request", id));

    QCOMPARE(collector.size(), NetworkRequestsCollector::maxRequests);
    QCOMPARE(forgotten.size(), 3);
    QVERIFY(!collector.request("700"));
    QVERIFY(!collector.request("500"));
    QVERIFY(!collector.request("0"));
    QVERIFY(collector.request("1"));
}

void tst_NetworkRequestsCollector::forgetsTheOld()
{
    TurnedClock clock;
    NetworkRequestsCollector collector(nullptr, clock);
    collector.process(notification("request", "1"));
    collector.process(notification("request", "2"));
    clock.advance(NetworkRequestsCollector::maxAgeMs);
    collector.process(notification("response", "2", "200"));
    QVERIFY(collector.request("1"));
    clock.advance(1);
    QVERIFY(!collector.request("1"));
    QCOMPARE(collector.requests().size(), size_t(1));
    collector.process(notification("request", "3"));
    QCOMPARE(collector.size(), size_t(2));
}

void tst_NetworkRequestsCollector::staysWithinItsBounds()
{
    NetworkRequestsCollector collector;
    BrowserTabsRequestsTracker tabs;
    connect(&collector, &NetworkRequestsCollector::requestForgotten, &tabs,
            &BrowserTabsRequestsTracker::removeRequest);
    connect(&tabs, &BrowserTabsRequestsTracker::requestAbandoned, &collector,
            qOverload<const std::string &>(&NetworkRequestsCollector::forget));
    connect(&tabs, &BrowserTabsRequestsTracker::requestMoved, &collector,
            &NetworkRequestsCollector::setPageUrl);

    std::mt19937 random(20251121);
    const std::vector<std::string> types = {"request",   "request", "response", "redirect",
                                            "completed", "failed",  "playlist"};
    for (int i = 0; i < 50'000; ++i) {
        auto next =
            notification(types[random() % types.size()], std::to_string(random() % 4000),
                         std::string(random() % 200, 'd'), std::string(random() % 30'000, 'h'));
        next.srcTabUrl = "http://page/" + std::to_string(random() % 3000);
        collector.process(next);
        if (next.type == "request" && collector.request(next.requestId))
            tabs.addRequest(next.srcTabUrl, next.requestId);
        const std::string other = "http://page/" + std::to_string(random() % 3000);
        if (i % 10 == 0)
            tabs.tabNavigated(next.srcTabUrl, other);
        if (i % 10 == 1)
            tabs.tabUrlChanged(next.srcTabUrl, other);
        if (i % 10 == 2)
            tabs.tabClosed(next.srcTabUrl);
        QVERIFY(collector.size() <= NetworkRequestsCollector::maxRequests);
        QVERIFY(collector.textBytes() <= NetworkRequestsCollector::maxTextBytes);
        QVERIFY(tabs.pagesCount() <= BrowserTabsRequestsTracker::maxPages);
    }

    // The sums kept along the way are those of what is held, and both sides know the same.
    size_t bytes = 0;
    std::set<std::string> pages;
    for (const NetworkRequest *request : collector.requests()) {
        bytes += request->textBytes();
        pages.insert(request->pageUrl);
    }
    QCOMPARE(collector.textBytes(), bytes);
    size_t tracked = 0;
    for (const std::string &page : pages)
        tracked += tabs.requestsOf(page).size();
    QCOMPARE(tracked, collector.size());

    // A single notification beyond the bound is not kept, and does no harm.
    collector.process(notification("request", "huge", "GET", std::string(20 << 20, 'h')));
    QCOMPARE(collector.request("huge"), nullptr);
}

void tst_NetworkRequestsCollector::tabsShareAPage()
{
    BrowserTabsRequestsTracker tabs;
    QSignalSpy abandoned(&tabs, &BrowserTabsRequestsTracker::requestAbandoned);
    tabs.tabNavigated("", "http://page/");
    tabs.tabNavigated("http://other/", "http://page/");
    tabs.addRequest("http://page/", "1");
    tabs.tabClosed("http://page/");
    QCOMPARE(abandoned.size(), 0);
    tabs.tabNavigated("http://page/", "http://elsewhere/");
    QCOMPARE(abandoned.size(), 1);
    QVERIFY(tabs.requestsOf("http://page/").empty());

    // Opened before the browser told of it.
    tabs.addRequest("http://early/", "2");
    tabs.tabClosed("http://early/");
    QCOMPARE(abandoned.size(), 2);
}

void tst_NetworkRequestsCollector::requestsFollowAChangedUrl()
{
    BrowserTabsRequestsTracker tabs;
    QSignalSpy moved(&tabs, &BrowserTabsRequestsTracker::requestMoved);
    tabs.tabNavigated("", "http://page/#a");
    tabs.addRequest("http://page/#a", "1");
    tabs.tabUrlChanged("http://page/#a", "http://page/#b");
    QCOMPARE(moved.size(), 1);
    QCOMPARE(tabs.requestsOf("http://page/#b"), std::vector<std::string>{"1"});

    // With two tabs on the page nobody knows whose the request is.
    tabs.tabNavigated("", "http://page/#b");
    tabs.tabUrlChanged("http://page/#b", "http://page/#c");
    QCOMPARE(tabs.requestsOf("http://page/#b"), std::vector<std::string>{"1"});
    QCOMPARE(moved.size(), 1);
}

QTEST_GUILESS_MAIN(tst_NetworkRequestsCollector)
#include "tst_networkrequestscollector.moc"
