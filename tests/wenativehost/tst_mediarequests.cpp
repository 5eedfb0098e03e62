#include "browsertabsrequeststracker.h"
#include "isolatedhost.h"
#include "mediarequestsanalyzer.h"
#include "mediarequestscollector.h"
#include "mediaurlsearch.h"
#include "networkrequestscollector.h"
#include "pmxflvsniffcallproctask.h"
#include "pmxjsonserializeobject.h"
#include "pmxkovbhipctasknetworkrequestnotification.h"
#include "turnedclock.h"

#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include <random>
#include <set>
#include <vector>

namespace {

constexpr auto page = "http://page/watch";

pmxKovBhIpcTaskNetworkRequestNotification notification(const std::string &type,
                                                       const std::string &requestId,
                                                       const std::string &data = {},
                                                       const std::string &headers = {})
{
    pmxKovBhIpcTaskNetworkRequestNotification result;
    result.type = type;
    result.requestId = requestId;
    result.url = "http://host/" + requestId;
    result.srcTabUrl = page;
    result.data = data;
    (type == "request" ? result.requestHeaders : result.responseHeaders) = headers;
    return result;
}

/// One answered request.
struct Seen {
    std::string id;
    std::string url;
    int status = 200;
    std::string responseHeaders = {};
    std::string pageUrl = page;
    std::string requestHeaders = {};
    std::string playlist = {};
    std::string method = "GET";
};

QSharedPointer<MediaRequestsCollector> collect(const std::vector<Seen> &seen)
{
    const auto requests = QSharedPointer<NetworkRequestsCollector>::create();
    for (const Seen &one : seen) {
        auto request = notification("request", one.id, one.method, one.requestHeaders);
        request.url = one.url;
        request.srcTabUrl = one.pageUrl;
        requests->process(request);
        requests->process(
            notification("response", one.id, std::to_string(one.status), one.responseHeaders));
        if (!one.playlist.empty())
            requests->process(notification("playlist", one.id, one.playlist));
    }
    return QSharedPointer<MediaRequestsCollector>::create(requests);
}

std::string video(int size)
{
    return "Content-Type: video/mp4\r\nContent-Length: " + std::to_string(size) + "\r\n";
}

std::string videoPart(const std::string &range)
{
    return "Content-Type: video/mp4\r\nContent-Length: 2\r\nContent-Range: bytes " + range + "\r\n";
}

constexpr auto hls = "Content-Type: application/vnd.apple.mpegurl\r\nContent-Length: 300\r\n";
constexpr auto dash = "Content-Type: application/dash+xml\r\n";
constexpr auto noType = "Content-Length: 1000000\r\n";
constexpr auto octets = "Content-Type: application/octet-stream\r\nContent-Length: 1000000\r\n";

} // namespace

Q_DECLARE_METATYPE(std::vector<Seen>)

class TestMediaRequests : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void finds_data()
    {
        QTest::addColumn<std::vector<Seen>>("seen");
        QTest::addColumn<QString>("found");
        const auto row = [](const char *name, const std::vector<Seen> &seen, const char *found) {
            QTest::newRow(name) << seen << QString::fromLatin1(found);
        };
        row("by type, just large enough", {{"1", "http://h/x", 200, video(65536)}}, "1:1");
        row("audio", {{"1", "http://h/x", 200, "Content-Type: audio/mpeg; q=1\r\n"}}, "1:2");
        row("by name, no type", {{"1", "http://h/a.MP4?x=1", 200, noType}}, "1:1");
        row("by name, octets", {{"1", "http://h/a.mp3", 200, octets}}, "1:2");
        row("by suggested name",
            {{"1", "http://h/get", 200,
              std::string(octets) + "Content-Disposition: attachment; filename=\"v.mkv\"\r\n"}},
            "1:1");
        row("a page with a media name",
            {{"1", "http://h/a.mp4", 200, "Content-Type: text/html\r\n"}}, "");
        row("an error", {{"1", "http://h/a.mp4", 404, video(100000)}}, "");
        row("a beacon", {{"1", "http://h/a.mp4", 204, "Content-Type: video/mp4\r\n"}}, "");
        row("a question for leave",
            {{"1", "http://h/a.mp4", 200, "Server: x\r\n", page, "", "", "OPTIONS"}}, "");
        row("too small", {{"1", "http://h/a.mp4", 200, video(65535)}}, "");
        row("HLS and its segments",
            {{"1", "http://h/v/master.m3u8", 200, hls},
             {"2", "http://h/v/720/index.m3u8", 200, hls},
             {"3", "http://h/v/720/0.ts", 200, "Content-Type: video/mp2t\r\n"},
             {"4", "http://cdn/0.ts", 200, "Content-Type: video/mp2t\r\n"},
             {"5", "http://h/v/init.mp4", 200, video(100000)}},
            "1:4");
        row("segments by the playlist's lines",
            {{"1", "http://h/a/master.m3u8", 200, hls, page, "",
              "#EXTM3U\r\n#EXT-X-MEDIA:TYPE=AUDIO,URI=\"http://cdn/sound.m3u8\"\r\n"
              "../b/low.m3u8\r\n"},
             {"0", "http://h/b/low.m3u8", 200, hls},
             {"2", "http://h/b/low.m3u8", 200, hls, page, "",
              "#EXTM3U\n#EXTINF:4,\n/c/0.mp4?k=1\n#EXT-X-RENDITION-REPORT:URI=\"../a/"
              "master.m3u8\"\n"},
             {"3", "http://cdn/sound.m3u8", 200, hls},
             {"4", "http://h/c/0.mp4?k=1", 200, video(500000)},
             {"5", "http://h/c/film.mp4", 200, video(500000)}},
            "1:4 5:1");
        row("another page's playlist",
            {{"1", "http://h/v/m.mpd", 200, dash, "http://other/"},
             {"2", "http://h/v/film.mp4", 200, video(500000)}},
            "1:4 2:1");
        row("parts are one, with the size of the whole",
            {{"1", "http://h/a.mp4", 206, videoPart("0-9/700000")},
             {"2", "http://h/a.mp4", 206, videoPart("10-19/*")},
             {"3", "http://h/a.mp4", 206, videoPart("20-29/*")}},
            "3:1:700000");
    }

    /// Each found one as "ID:KIND", with its size when that is not the length of the answer.
    void finds()
    {
        QFETCH(const std::vector<Seen>, seen);
        QFETCH(const QString, found);
        QStringList media;
        for (const MediaRequest &one : collect(seen)->mediaRequests()) {
            QString text = u"%1:%2"_qs.arg(QString::fromStdString(one.request.id))
                               .arg(static_cast<int>(one.kind));
            if (one.request.status == 206)
                text += u":%1"_qs.arg(one.size.value_or(0));
            media.append(text);
        }
        QCOMPARE(media.join(u' '), found);
    }

    void ranks()
    {
        const auto media = collect({{"unknown", "http://h/unknown.mp4", 200,
                                     "Content-Type: video/mp4", page, "Referer: http://f2/\r\n"},
                                    {"first", "http://h/old.mp4", 200, video(100000)},
                                    {"big", "http://h/big.mp4", 200, video(900000)},
                                    {"new", "http://h/new.mp4", 200, video(100000)},
                                    {"old", "http://h/old.mp4", 200, video(100000)},
                                    {"framed", "http://h/framed.mp4", 200, video(70000),
                                     "http://f/", "referer: http://frame/\r\n"},
                                    {"stream", "http://h/s/m.mpd", 200, dash}});
        // The task, and the ids of the candidates, or the URL of one that was no request.
        const std::pair<const char *, const char *> cases[] = {
            {"'webPageUrl':'http://page/watch'", "stream big old new unknown"},
            {"'webPageUrl':'http://page/watch','frameUrl':'http://frame/'",
             "framed stream big old new unknown"},
            {"'webPageUrl':'http://page/watch','requestId':'new'", "new"},
            {"'webPageUrl':'http://page/watch','requestId':'gone'", ""},
            {"'requestId':'new','url':'http://h/of/another.mp4'", "http://h/of/another.mp4"},
            {"'url':'http://h/new.mp4'", "new"},
            {"'webPageUrl':'http://page/watch#at','frameUrl':'http://f2/e'",
             "unknown stream big old new"},
            {"'webPageUrl':'http://nowhere/'", ""},
            {"'webPageUrl':'http://nowhere/watch','flashVars':'image=a.jpg&file=v%2Ffilm.flv'",
             "http://nowhere/v/film.flv"}};
        for (const auto &[members, expected] : cases) {
            pmxFlvSniffCallProcTask task;
            const QByteArray json = "{" + QByteArray(members).replace('\'', '"') + "}";
            QVERIFY(pmxJsonSerializeObject(task, json.toStdString(), 0));
            QStringList found;
            for (const MediaRequest &one : MediaRequestsAnalyzer(media).candidates(task))
                found.append(QString::fromStdString(one.request.id.empty() ? one.request.url
                                                                           : one.request.id));
            QCOMPARE(found.join(u' '), QLatin1String(expected));
        }
    }

    void searchesPlayerVariables()
    {
        const std::pair<const char *, const char *> cases[] = {
            {"http://h/a.flv", "http://h/a.flv"},
            {"autoplay=true&skin=dark.zip", ""},
            {"a=1&file=http://h/a.mp4&b=2", "http://h/a.mp4"},
            {"src=http%3A%2F%2Fh%2Fa.mp4%3Fk%3D1&x=y", "http://h/a.mp4?k=1"},
            {"u=http%253A%252F%252Fh%252Fa.mp4", "http://h/a.mp4"},
            {"file=../v/a.webm", "http://page/v/a.webm"},
            {"{\"playlist\":[{\"url\":\"http://h/a.m3u8\"}]}", "http://h/a.m3u8"},
            {"a=http://h/a.mp4&b=http%3A//h/a.mp4", "http://h/a.mp4"},
            {"file:///etc/a.mp4 javascript:x.mp4", ""},
            {"http://h/player.swf?file=http://h/b.flv", "http://h/b.flv"},
            {"f=http://h/v_,300,500,.mp4.csmil/m.m3u8?of=http://p&x=1",
             "http://h/v_,300,500,.mp4.csmil/m.m3u8?of=http://p"},
            {"f=http://h/a.mp4,http://h/b.mp4;skin=x", "http://h/a.mp4 http://h/b.mp4"},
            {"file=%zz%a.mp4%", ""}};
        for (const auto &[text, expected] : cases) {
            QStringList urls;
            for (const QUrl &url : findMediaUrls(text, QUrl(u"http://page/dir/watch"_qs)))
                urls.append(url.toString());
            QCOMPARE(urls.join(u' '), QLatin1String(expected));
        }
    }

    /// From what the browser tells, through the dispatcher, to what the application is given.
    void sniffs()
    {
        IsolatedHost host;
        QVERIFY(host.connectToApplication());
        const auto tell = [&host](const char *type, const QString &record) {
            return host.tell(
                u"{'id':'7','type':'%1','%1':{%2}}"_qs.arg(QLatin1String(type), record));
        };
        const auto sniffed = [](const QString &error, const QString &result,
                                const QString &error2 = {}) {
            return u"{'error':'%1','id':'7','result':'%2','type':'video_sniffer','videoSniffer':"
                   "{'error':'%1','error2':'%3','result':'%2'}}"_qs.arg(error, result, error2);
        };
        const QString request = u"'requestId':'1','url':'http://h/x','srcTabUrl':'http://p/',"_qs;
        const std::pair<const char *, AbstractDownloadType> cases[] = {
            {"video/mp4", AbstractDownloadType::Video},
            {"audio/mpeg", AbstractDownloadType::Audio},
            {"application/dash+xml", AbstractDownloadType::MediaStream}};
        for (const auto &[type, expected] : cases) {
            for (const QString &told :
                 {u"'type':'request','requestHeaders':'referer: http://p/\\r\\ncookie: a=b\\r\\n"
                  "user-agent: ua\\r\\n'"_qs,
                  u"'type':'response','data':'200','responseHeaders':'content-type: %1\\r\\n'"_qs
                      .arg(QLatin1String(type)),
                  u"'type':'completed'"_qs})
                QCOMPARE(tell("network_request_notification", request + told),
                         answer(u"7"_qs, u"network_request_notification"_qs, u""_qs));
            QCOMPARE(tell("video_sniffer", u"'webPageUrl':'http://p/'"_qs), u""_qs);
            const AbstractNewDownloadsRequestJob &job = host.jobs.constLast();
            const AbstractDownloadPersistentInfo &download = *job.request.downloads.at(0).info;
            QCOMPARE(job.request.preferredDownloadType, expected);
            QCOMPARE(download.source.url, QUrl(u"http://h/x"_qs));
            QCOMPARE(download.source.referer + download.userAgent, u"http://p/ua"_qs);
            QCOMPARE(download.source.cookies, QList({QNetworkCookie("a", "b")}));
            Q_EMIT host.client->incomingDownloadsProcessor()->finished(job.id, true, false, {}, {},
                                                                       false);
            QCOMPARE(host.sent(), sniffed(u""_qs, u"1"_qs));
        }
        QCOMPARE(tell("video_sniffer", u""_qs),
                 sniffed(u"invalid arguments"_qs, u""_qs, u"no page, URL or request is named"_qs));
        QCOMPARE(tell("video_sniffer", u"'url':'blob:http://h/1'"_qs),
                 sniffed(u"invalid arguments"_qs, u""_qs, u"the URL cannot be downloaded"_qs));
        QCOMPARE(tell("browser_download_state_report", u"'url':'http://h/x','state':'odd'"_qs),
                 answer(u"7"_qs, u"browser_download_state_report"_qs, u"invalid arguments"_qs));
        // What the browser downloads itself is kept out.
        tell("browser_download_state_report", u"'url':'http://h/x','state':'in_progress'"_qs);
        QCOMPARE(tell("video_sniffer", u"'webPageUrl':'http://p/'"_qs),
                 sniffed(u"no_media_found"_qs, u""_qs));
    }

    void requestsAndRedirects()
    {
        NetworkRequestsCollector collector;
        for (const auto &unknown : {notification("response", "1", "200"), notification("x", "1"),
                                    notification("request", "")})
            collector.process(unknown);
        QCOMPARE(collector.size(), size_t(0));

        collector.process(notification("request", "1", "POST", "Cookie: first\r\n"));
        collector.process(notification("response", "1", "302", "Location: http://b/\r\n"));
        const NetworkRequest *const request = collector.request("1");
        QCOMPARE(request->method + request->pageUrl + request->requestHeaders,
                 "POST" + std::string(page) + "Cookie: first\r\n");
        QCOMPARE(request->status, 302);
        collector.process(notification("redirect", "1", "http://b/"));
        QCOMPARE(request->url, "http://b/");
        QVERIFY(request->status == 0 && request->responseHeaders.empty());
        // Browsers send the request anew under the same id.
        auto anew = notification("request", "1", "GET", "Cookie: second\r\n");
        anew.url = "http://b/";
        collector.process(anew);
        collector.process(
            notification("response", "1", "no number", "Content-Type: video/mp4\r\n"));
        collector.process(notification("failed", "1"));
        QCOMPARE(collector.size(), size_t(1));
        QCOMPARE(collector.request("1")->requestHeaders, "Cookie: second\r\n");
        QCOMPARE(collector.request("1")->status, 0);
        QCOMPARE(collector.request("1")->originalUrl, "http://host/1");
        // After its end the id belongs to another request.
        const quint64 first = collector.request("1")->number;
        collector.process(notification("request", "1"));
        QVERIFY(collector.request("1")->number > first);
        QVERIFY(collector.request("1")->responseHeaders.empty());
    }

    void forgetsFinishedOnesAndTheOldFirst()
    {
        TurnedClock clock;
        NetworkRequestsCollector collector(nullptr, clock);
        for (size_t i = 0; i < NetworkRequestsCollector::maxRequests; ++i)
            collector.process(notification("request", std::to_string(i)));
        for (const char *id : {"700", "500"})
            collector.process(notification("completed", id));
        for (const char *id : {"a", "b", "c"})
            collector.process(notification("request", id));
        QCOMPARE(collector.size(), NetworkRequestsCollector::maxRequests);
        for (const char *id : {"700", "500", "0"})
            QVERIFY(!collector.request(id));
        QVERIFY(collector.request("1"));

        clock.advance(NetworkRequestsCollector::maxAgeMs);
        collector.process(notification("response", "2", "200"));
        QVERIFY(collector.request("1"));
        clock.advance(1);
        QCOMPARE(collector.requests().size(), size_t(1));
        collector.process(notification("request", "3"));
        QCOMPARE(collector.size(), size_t(2));

        // The pieces of a stream come long after its playlist.
        collector.process(notification("request", "list"));
        collector.process(notification("response", "list", "200", hls));
        collector.process(notification("completed", "list"));
        for (const char *id : {"piece", "a later piece"}) {
            clock.advance(NetworkRequestsCollector::maxAgeMs);
            QVERIFY(collector.request("list"));
            collector.process(notification("request", id));
        }
        clock.advance(NetworkRequestsCollector::maxAgeMs + 1);
        QVERIFY(!collector.request("list"));
    }

    void staysWithinItsBounds()
    {
        NetworkRequestsCollector collector;
        BrowserTabsRequestsTracker tabs;
        connect(&collector, &NetworkRequestsCollector::requestForgotten, &tabs,
                &BrowserTabsRequestsTracker::removeRequest);
        connect(&tabs, &BrowserTabsRequestsTracker::requestAbandoned, &collector,
                qOverload<const std::string &>(&NetworkRequestsCollector::forget));
        connect(&tabs, &BrowserTabsRequestsTracker::requestsMoved, &collector,
                &NetworkRequestsCollector::changePageUrl);

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
            if (i % 10 == 0)
                tabs.tabNavigated(next.srcTabUrl, "http://page/" + std::to_string(i % 3000));
            if (i % 10 == 1)
                tabs.tabUrlChanged(next.srcTabUrl, "http://page/" + std::to_string(i % 3000));
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
        for (const std::string &url : pages)
            tracked += tabs.requestsOf(url).size();
        QCOMPARE(tracked, collector.size());

        // A single notification beyond the bound is not kept, and does no harm.
        const size_t before = collector.size();
        collector.process(notification("request", "huge", "GET", std::string(20 << 20, 'h')));
        QCOMPARE(collector.request("huge"), nullptr);
        QCOMPARE(collector.size(), std::min(before, NetworkRequestsCollector::maxRequests - 1));
    }

    void requestsOfTabs()
    {
        BrowserTabsRequestsTracker tabs;
        QSignalSpy abandoned(&tabs, &BrowserTabsRequestsTracker::requestAbandoned);
        QSignalSpy moved(&tabs, &BrowserTabsRequestsTracker::requestsMoved);
        tabs.addRequest("http://opened/before/the/browser/told", "0");
        tabs.tabClosed("http://opened/before/the/browser/told");
        QCOMPARE(abandoned.size(), 1);

        tabs.tabNavigated("", "http://page/#a");
        tabs.addRequest("http://page/#a", "1");
        tabs.tabNavigated("http://page/#a", "http://page/#b");
        QCOMPARE(moved.size(), 1);
        QCOMPARE(tabs.requestsOf("http://page/#b"), std::vector<std::string>{"1"});
        // With two tabs on the page nobody knows whose the request is.
        tabs.tabNavigated("http://other/", "http://page/#b");
        tabs.tabUrlChanged("http://page/#b", "http://page/#c");
        QCOMPARE(moved.size(), 1);
        QCOMPARE(abandoned.size(), 1);
        tabs.tabNavigated("http://page/#b", "http://elsewhere/");
        QCOMPARE(abandoned.size(), 2);
        QVERIFY(tabs.requestsOf("http://page/#b").empty());
    }
};

QTEST_GUILESS_MAIN(TestMediaRequests)
#include "tst_mediarequests.moc"
