#include "browseractivitymonitor.h"
#include "browsertabsrequeststracker.h"
#include "fakeclock.h"
#include "isolatedhost.h"
#include "mediarequestsanalyzer.h"
#include "mediarequestscollector.h"
#include "networkrequestscollector.h"
#include "pmxflvsniffcallproctask.h"
#include "pmxjsonserializeobject.h"
#include "pmxkovbhipcnetworkrequestnotificationtaskprocessor.h"
#include "pmxkovbhipctask.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <random>

namespace {

/// The objects that find media, connected as in the dispatcher, but without it.
class Sniffer {
public:
    void report(const QJsonObject &record)
    {
        const QString type = u"network_request_notification"_qs;
        const auto task = std::make_shared<pmxKovBhIpcTask>();
        const QJsonDocument message(
            QJsonObject{{u"id"_qs, u"1"_qs}, {u"type"_qs, type}, {type, record}});
        pmxJsonSerializeObject(*task, message.toJson().toStdString(), 0);
        processor.process(task, [](const auto &, const auto &) {});
    }
    void report(const QString &type, const QString &id, const QString &data = {},
                const QString &page = u"http://page/watch"_qs, const QString &headers = {})
    {
        report({{u"type"_qs, type},
                {u"requestId"_qs, id},
                {u"url"_qs, u"http://host/"_qs + id},
                {u"data"_qs, data},
                {u"srcTabUrl"_qs, page},
                {u"requestHeaders"_qs, headers}});
    }
    /// A request with a response; members that are left out have usual values.
    void see(const QJsonObject &seen)
    {
        QJsonObject record{{u"requestId"_qs, seen[u"id"]},
                           {u"url"_qs, seen[u"url"]},
                           {u"srcTabUrl"_qs, seen[u"page"].toString(u"http://page/watch"_qs)},
                           {u"requestHeaders"_qs, seen[u"requestHeaders"]},
                           {u"responseHeaders"_qs, seen[u"headers"]}};
        const auto reportAs = [&](const QString &type, const QJsonValue &data) {
            record[u"type"] = type;
            record[u"data"] = data;
            report(record);
        };
        reportAs(u"request"_qs, seen[u"method"].toString(u"GET"_qs));
        reportAs(u"response"_qs, seen[u"status"].toString(u"200"_qs));
        if (seen.contains(u"playlist"))
            reportAs(u"playlist"_qs, seen[u"playlist"]);
        reportAs(u"completed"_qs, {});
    }

    FakeClock clock;
    QSharedPointer<NetworkRequestsCollector> requests =
        QSharedPointer<NetworkRequestsCollector>::create(nullptr, clock);
    QSharedPointer<MediaRequestsCollector> media =
        QSharedPointer<MediaRequestsCollector>::create(requests);
    QSharedPointer<BrowserActivityMonitor> monitor =
        QSharedPointer<BrowserActivityMonitor>::create();
    pmxKovBhIpcNetworkRequestNotificationTaskProcessor processor{
        monitor, requests, QSharedPointer<BrowserTabsRequestsTracker>::create()};
};

/// Each as "ID:KIND", with its size and quality, if known.
QString described(const std::vector<MediaRequest> &media)
{
    QStringList texts;
    for (const MediaRequest &one : media) {
        QString text = QString::fromStdString(one.request.id);
        text += one.kind == MediaKind::StreamMediaKind ? u":stream"_qs
            : one.kind == MediaKind::VideoMediaKind    ? u":video"_qs
                                                       : u":audio"_qs;
        if (one.size)
            text += u":%1"_qs.arg(*one.size);
        if (one.request.playlist && one.request.playlist->height() > 0)
            text += u":%1p"_qs.arg(one.request.playlist->height());
        texts.append(text);
    }
    return texts.join(u' ');
}

/// The ids of the candidates, or the URLs of those that were not observed.
QString picked(const Sniffer &sniffer, const QJsonObject &members)
{
    pmxFlvSniffCallProcTask task;
    pmxJsonSerializeObject(task, QJsonDocument(members).toJson().toStdString(), 0);
    QStringList found;
    for (const MediaRequest &one : MediaRequestsAnalyzer(sniffer.media).candidates(task))
        found.append(
            QString::fromStdString(one.request.id.empty() ? one.request.url : one.request.id));
    return found.join(u' ');
}

} // namespace

class TestMediaRequests : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void finds_data()
    {
        QTest::addColumn<QJsonObject>("scene");
        QFile file(QFINDTESTDATA("media.json"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonArray scenes = QJsonDocument::fromJson(file.readAll()).array();
        QVERIFY(!scenes.isEmpty());
        for (const auto &scene : scenes)
            QTest::newRow(qPrintable(scene[u"name"].toString())) << scene.toObject();
    }

    void finds()
    {
        QFETCH(const QJsonObject, scene);
        Sniffer sniffer;
        const QJsonArray events = scene[u"events"].toArray();
        for (const auto &event : events) {
            if (event[u"downloading"].isString())
                sniffer.monitor->downloadBegan(event[u"downloading"].toString().toStdString());
            else if (event[u"type"].isString())
                sniffer.report(event.toObject());
            else
                sniffer.see(event.toObject());
        }
        QCOMPARE(described(sniffer.media->mediaRequests()), scene[u"finds"].toString());
        QCOMPARE(described(sniffer.media->partsOf("http://page/watch")),
                 scene[u"parts"].toString());
        const QJsonArray picks = scene[u"picks"].toArray();
        for (const auto &pick : picks)
            QCOMPARE(picked(sniffer, pick[u"task"].toObject()), pick[u"gets"].toString());
    }

    /// From the browser's notifications, through the dispatcher, to the application's job.
    void sniffs()
    {
        IsolatedHost host;
        QVERIFY(host.connectToApplication());
        const auto send = [&host](const char *type, const QString &record) {
            return host.send(
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
                QCOMPARE(send("network_request_notification", request + told),
                         answer(u"7"_qs, u"network_request_notification"_qs, u""_qs));
            QCOMPARE(send("video_sniffer", u"'webPageUrl':'http://p/'"_qs), u""_qs);
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
        QCOMPARE(send("video_sniffer", u""_qs),
                 sniffed(u"invalid arguments"_qs, u""_qs, u"no page, URL or request is named"_qs));
        QCOMPARE(send("video_sniffer", u"'url':'blob:http://h/1'"_qs),
                 sniffed(u"invalid arguments"_qs, u""_qs, u"the URL cannot be downloaded"_qs));
        QCOMPARE(send("browser_download_state_report", u"'url':'http://h/x','state':'odd'"_qs),
                 answer(u"7"_qs, u"browser_download_state_report"_qs, u"invalid arguments"_qs));

        const auto plain = [](QString sent) { return sent.replace(u"\\/"_qs, u"/"_qs); };
        const auto nextSent = [&] {
            QString text;
            return QTest::qWaitFor([&] { return !(text = host.sent()).isEmpty(); }) ? plain(text)
                                                                                    : QString();
        };
        const auto note = [&send](const QString &record) {
            send("network_request_notification", record);
        };
        // From here on the extension is notified of the media: at once, and after changes.
        note(u"'type':'media_wanted'"_qs);
        const QString elsewhere = u"'requestId':'0','url':'http://h/x','srcTabUrl':'http://q/',"_qs;
        note(elsewhere + u"'type':'request'"_qs);
        QCOMPARE(send("video_sniffer", u"'webPageUrl':'http://q/'"_qs),
                 sniffed(u"no_media_found"_qs, u""_qs));
        note(elsewhere
             + u"'type':'response','data':'200','responseHeaders':"
               "'content-type: application/dash+xml\\r\\n'"_qs);
        note(elsewhere + u"'type':'part'"_qs);
        QVERIFY(nextSent().contains(u"'part':true"_qs));
        note(u"'type':'tab_closed','srcTabUrl':'http://q/'"_qs);
        QVERIFY(nextSent().contains(u"'page_media':{'page':'http://q/'}"_qs));
        const auto told = [](const QString &media) {
            return u"{'error':'','id':'','page_media':{%1'page':'http://p/'},'result':'',"
                   "'type':'page_media'}"_qs.arg(media);
        };
        note(request + u"'type':'completed'"_qs);
        const QString stream = u"'media':[{'kind':'stream','method':'','originalUrl':'http://h/x',"
                               "'part':false,'quality':'%1','requestHeaders':'referer: "
                               "http://p/\\r\\ncookie: a=b\\r\\nuser-agent: ua\\r\\n','requestId':"
                               "'1','responseHeaders':'content-type: application/dash+xml\\r\\n',"
                               "'size':'-1','status':'200','title':'x','unread':%2,'url':"
                               "'http://h/x'}],"_qs;
        QCOMPARE(nextSent(), told(stream.arg(u""_qs, u"true"_qs)));
        note(request + u"'type':'playlist','data':'<MPD height=\\\"720\\\"/>'"_qs);
        QCOMPARE(nextSent(), told(stream.arg(u"720p"_qs, u"false"_qs)));
        // The browser's own downloads are ignored.
        send("browser_download_state_report", u"'url':'http://h/x','state':'in_progress'"_qs);
        QCOMPARE(plain(send("video_sniffer", u"'webPageUrl':'http://p/'"_qs)),
                 told(u""_qs) + u'|' + sniffed(u"no_media_found"_qs, u""_qs));
        // Browsers accept no message over 1 MB: only the best media are sent.
        const QString headers = u"\\u0001"_qs.repeated(20'000);
        for (int i = 0; i < 40; ++i) {
            const QString one = u"'requestId':'%1','url':'http://h/%1','srcTabUrl':'http://p/',"_qs;
            note(one.arg(i) + u"'type':'request','requestHeaders':'"_qs + headers + u'\'');
            note(one.arg(i) + u"'type':'response','data':'200','responseHeaders':"_qs
                 + u"'content-type: video/mp4\\r\\ncontent-length: %1'"_qs.arg(100'000 + i));
        }
        const QString message = nextSent();
        QVERIFY(message.size() > 500'000 && message.size() < 1'000'000);
        QVERIFY(message.contains(u"'requestId':'39'"_qs)
                && !message.contains(u"'requestId':'1'"_qs));
    }

    void forgetsFinishedOnesAndTheOldFirst()
    {
        Sniffer sniffer;
        const auto has = [&sniffer](const char *id) { return sniffer.requests->request(id); };
        sniffer.see({{u"id"_qs, u"film"_qs}, {u"url"_qs, u"http://h/film.mp4"_qs}});
        QCOMPARE(described(sniffer.media->mediaRequests()), u"film:video"_qs);
        for (size_t i = 1; i < NetworkRequestsCollector::maxRequests; ++i)
            sniffer.report(u"request"_qs, QString::number(i));
        for (const char *id : {"700", "500"})
            sniffer.report(u"completed"_qs, QLatin1String(id));
        for (const char *id : {"a", "b", "c"})
            sniffer.report(u"request"_qs, QLatin1String(id));
        QCOMPARE(sniffer.requests->requests().size(), NetworkRequestsCollector::maxRequests);
        QVERIFY(!has("700") && !has("500") && !has("1") && has("2") && has("film"));

        // Further events of what is kept do not make it less worth.
        sniffer.report({{u"type"_qs, u"playlist"_qs}, {u"requestId"_qs, u"film"_qs}});
        sniffer.report({{u"type"_qs, u"completed"_qs}, {u"requestId"_qs, u"film"_qs}});
        sniffer.report(u"request"_qs, u"d"_qs);
        QVERIFY(!has("2") && has("4") && has("film"));

        // A page's media are kept as long as the page. An unknown event is none.
        sniffer.clock.advance(NetworkRequestsCollector::maxAgeMs);
        QVERIFY(has("4"));
        sniffer.report(u"response"_qs, u"3"_qs, u"200"_qs);
        sniffer.report(u"odd"_qs, u"4"_qs);
        sniffer.clock.advance(1);
        QVERIFY(!has("4") && has("3"));
        QCOMPARE(sniffer.requests->requests().size(), size_t(2));
        QCOMPARE(described(sniffer.media->mediaRequests()), u"film:video"_qs);
    }

    /// A verdict is of what was known then.
    void judgesAnewAfterEachEvent()
    {
        Sniffer sniffer;
        const auto respond = [&sniffer](const QString &length) {
            sniffer.report({{u"type"_qs, u"response"_qs},
                            {u"requestId"_qs, u"1"_qs},
                            {u"data"_qs, u"200"_qs},
                            {u"responseHeaders"_qs,
                             u"content-type: video/mp4\r\ncontent-length: "_qs + length}});
            return described(sniffer.media->mediaRequests());
        };
        sniffer.report(u"request"_qs, u"1"_qs);
        QCOMPARE(respond(u"1"_qs), QString());
        QCOMPARE(respond(u"900000"_qs), u"1:video:900000"_qs);
        QCOMPARE(respond(u"1"_qs), QString());
        QCOMPARE(respond(u"900000"_qs), u"1:video:900000"_qs);
        sniffer.report(u"failed"_qs, u"1"_qs);
        QCOMPARE(described(sniffer.media->mediaRequests()), QString());
    }

    void staysWithinItsBounds()
    {
        Sniffer sniffer;
        std::mt19937 random(20251121);
        const QStringList types = {u"request"_qs,  u"request"_qs,       u"response"_qs,
                                   u"redirect"_qs, u"completed"_qs,     u"failed"_qs,
                                   u"playlist"_qs, u"tab_navigated"_qs, u"tab_url_changed"_qs};
        const auto page = [&random] { return u"http://page/%1"_qs.arg(random() % 3000); };
        for (int i = 0; i < 4'000; ++i) {
            const QString &type = types[static_cast<qsizetype>(random()) % types.size()];
            sniffer.report(type, QString::number(random() % 4000),
                           type.startsWith(u"tab"_qs) ? page() : QString::number(200), page(),
                           QString(static_cast<qsizetype>(random() % 60'000), u'h'));
            if (i % 50 != 0)
                continue;
            sniffer.clock.advance(MediaRequestsCollector::settleMs);
            size_t bytes = 0;
            for (const NetworkRequest *request : sniffer.requests->requests())
                bytes += request->textBytes();
            QVERIFY(bytes <= NetworkRequestsCollector::maxTextBytes);
            QVERIFY(i < 3'000 || bytes > NetworkRequestsCollector::maxTextBytes / 2);
        }

        // A single notification beyond the limit is not kept, and has no other effect.
        const size_t before = sniffer.requests->requests().size();
        sniffer.report(u"request"_qs, u"huge"_qs, {}, {}, QString(20 << 20, u'h'));
        QVERIFY(!sniffer.requests->request("huge"));
        QVERIFY(sniffer.requests->requests().size() + 1 >= before);

        // One that takes exactly all is.
        Sniffer other;
        other.report(u"request"_qs, u"all"_qs);
        const size_t rest =
            NetworkRequestsCollector::maxTextBytes - other.requests->request("all")->textBytes();
        other.report(u"request"_qs, u"all"_qs, {}, u"http://page/watch"_qs,
                     QString(qsizetype(rest), u'h'));
        QVERIFY(other.requests->request("all"));

        // The URLs of tabs, and of the browser's downloads, are limited, too.
        RecentUrls<int> urls;
        const std::string longUrl(RecentUrls<int>::maxBytes / 3, 'u');
        for (const char *end : {"a", "b", "a", "c", "d"})
            ++urls.touch(end + longUrl);
        urls.touch(longUrl + longUrl + longUrl + longUrl) = 1;
        QVERIFY(!urls.find("a" + longUrl) && !urls.find("b" + longUrl) && urls.find("d" + longUrl));
        QCOMPARE(urls.takeAll().size(), size_t(2));
    }
};

QTEST_GUILESS_MAIN(TestMediaRequests)
#include "tst_mediarequests.moc"
