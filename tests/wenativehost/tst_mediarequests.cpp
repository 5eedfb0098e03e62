#include "mediarequestsanalyzer.h"
#include "mediarequestscollector.h"
#include "mediaurlsearch.h"
#include "networkrequestscollector.h"
#include "pmxflvsniffcallproctask.h"
#include "pmxkovbhipctasknetworkrequestnotification.h"

#include <QTest>

namespace {

constexpr auto page = "http://page/watch";

/// One answered request: "id url status headers".
struct Seen {
    std::string id;
    std::string url;
    int status = 200;
    std::string responseHeaders = {};
    std::string pageUrl = page;
    std::string requestHeaders = {};
    std::string playlist = {};
};

std::string video(int size)
{
    return "Content-Type: video/mp4\r\nContent-Length: " + std::to_string(size) + "\r\n";
}

constexpr auto hls = "Content-Type: application/vnd.apple.mpegurl\r\nContent-Length: 300\r\n";
constexpr auto dash = "Content-Type: application/dash+xml\r\n";
constexpr auto noType = "Content-Length: 1000000\r\n";
constexpr auto octets = "Content-Type: application/octet-stream\r\nContent-Length: 1000000\r\n";

} // namespace

Q_DECLARE_METATYPE(std::vector<Seen>)
Q_DECLARE_METATYPE(pmxFlvSniffCallProcTask)

class tst_MediaRequests : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void finds_data();
    void finds();
    void ranks_data();
    void ranks();
    void keepsTheSizeOfTheWhole();
    void searchesPlayerVariables_data();
    void searchesPlayerVariables();

private:
    static QSharedPointer<MediaRequestsCollector> collect(const std::vector<Seen> &seen);
};

QSharedPointer<MediaRequestsCollector> tst_MediaRequests::collect(const std::vector<Seen> &seen)
{
    const auto requests = QSharedPointer<NetworkRequestsCollector>::create();
    for (const Seen &one : seen) {
        pmxKovBhIpcTaskNetworkRequestNotification notification;
        notification.type = "request";
        notification.requestId = one.id;
        notification.url = one.url;
        notification.srcTabUrl = one.pageUrl;
        notification.requestHeaders = one.requestHeaders;
        requests->process(notification);
        notification.type = "response";
        notification.data = std::to_string(one.status);
        notification.responseHeaders = one.responseHeaders;
        requests->process(notification);
        if (!one.playlist.empty()) {
            notification.type = "playlist";
            notification.data = one.playlist;
            requests->process(notification);
        }
    }
    return QSharedPointer<MediaRequestsCollector>::create(requests);
}

void tst_MediaRequests::finds_data()
{
    QTest::addColumn<std::vector<Seen>>("seen");
    QTest::addColumn<QString>("found");

    const auto row = [](const char *name, const std::vector<Seen> &seen, const char *found) {
        QTest::newRow(name) << seen << QString::fromLatin1(found);
    };
    row("by type", {{"1", "http://h/x", 200, video(100000)}}, "1:1");
    row("audio", {{"1", "http://h/x", 200, "Content-Type: audio/mpeg; q=1\r\n"}}, "1:2");
    row("by name, no type", {{"1", "http://h/a.MP4?x=1", 200, noType}}, "1:1");
    row("by name, octets", {{"1", "http://h/a.mp3", 200, octets}}, "1:2");
    row("by suggested name",
        {{"1", "http://h/get", 200,
          std::string(octets) + "Content-Disposition: attachment; filename=\"v.mkv\"\r\n"}},
        "1:1");
    row("a page with a media name", {{"1", "http://h/a.mp4", 200, "Content-Type: text/html\r\n"}},
        "");
    row("a poster", {{"1", "http://h/a.jpg", 200, "Content-Type: image/jpeg\r\n"}}, "");
    row("an error", {{"1", "http://h/a.mp4", 404, video(100000)}}, "");
    row("a beacon", {{"1", "http://h/a.mp4", 204, "Content-Type: video/mp4\r\n"}}, "");
    row("too small", {{"1", "http://h/a.mp4", 200, video(65535)}}, "");
    row("just large enough", {{"1", "http://h/a.mp4", 200, video(65536)}}, "1:1");
    row("a small part of much",
        {{"1", "http://h/a.mp4", 206,
          "Content-Type: video/mp4\r\nContent-Length: 2\r\nContent-Range: bytes 0-1/900000\r\n"}},
        "1:1");
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
         {"2", "http://h/b/low.m3u8", 200, hls, page, "", "#EXTM3U\n#EXTINF:4,\n/c/0.mp4?k=1\n"},
         {"3", "http://cdn/sound.m3u8", 200, hls},
         {"4", "http://h/c/0.mp4?k=1", 200, video(500000)},
         {"5", "http://h/c/film.mp4", 200, video(500000)}},
        "1:4 5:1");
    row("DASH",
        {{"1", "http://h/v/m.mpd", 200, dash},
         {"2", "http://h/v/a/1.m4s", 200, video(500000)},
         {"3", "http://h/v/b/i.mp4", 200, video(500000)}},
        "1:4");
    row("another page's playlist",
        {{"1", "http://h/v/m.mpd", 200, dash, "http://other/"},
         {"2", "http://h/v/film.mp4", 200, video(500000)}},
        "1:4 2:1");
}

void tst_MediaRequests::finds()
{
    QFETCH(const std::vector<Seen>, seen);
    QStringList found;
    for (const MediaRequest &media : collect(seen)->mediaRequests())
        found.append(QStringLiteral("%1:%2")
                         .arg(QString::fromStdString(media.request.id))
                         .arg(static_cast<int>(media.kind)));
    QTEST(found.join(u' '), "found");
}

void tst_MediaRequests::ranks_data()
{
    QTest::addColumn<pmxFlvSniffCallProcTask>("task");
    QTest::addColumn<QString>("urls");

    const auto row = [](const char *name, const char *urls, auto fill) {
        pmxFlvSniffCallProcTask task;
        fill(task);
        QTest::newRow(name) << task << QString::fromLatin1(urls);
    };
    row("page",
        "http://h/s/m.mpd http://h/big.mp4 http://h/new.mp4 http://h/old.mp4 http://h/unknown.mp4",
        [](auto &task) { task.webPageUrl = page; });
    row("frame first",
        "http://h/framed.mp4 http://h/s/m.mpd http://h/big.mp4 http://h/new.mp4 http://h/old.mp4 "
        "http://h/unknown.mp4",
        [](auto &task) {
            task.webPageUrl = page;
            task.frameUrl = "http://frame/";
        });
    row("id", "http://h/old.mp4", [](auto &task) {
        task.webPageUrl = page;
        task.requestId = "old";
    });
    row("id of nothing", "", [](auto &task) {
        task.webPageUrl = page;
        task.requestId = "gone";
    });
    row("id used again", "http://h/asked.mp4", [](auto &task) {
        task.requestId = "old";
        task.url = "http://h/asked.mp4";
    });
    row("URL", "http://h/new.mp4", [](auto &task) { task.url = "http://h/new.mp4"; });
    row("other page", "", [](auto &task) { task.webPageUrl = "http://nowhere/"; });
    row("player's variables", "http://nowhere/v/film.flv", [](auto &task) {
        task.webPageUrl = "http://nowhere/watch";
        task.flashVars = "image=a.jpg&file=v%2Ffilm.flv";
    });
}

void tst_MediaRequests::ranks()
{
    const auto media = collect({{"unknown", "http://h/unknown.mp4", 200, "Content-Type: video/mp4"},
                                {"old", "http://h/old.mp4", 200, video(100000)},
                                {"big", "http://h/big.mp4", 200, video(900000)},
                                {"new", "http://h/new.mp4", 200, video(100000)},
                                {"again", "http://h/old.mp4", 200, video(100000), "http://x/"},
                                {"framed", "http://h/framed.mp4", 200, video(70000), "http://f/",
                                 "referer: http://frame/\r\n"},
                                {"stream", "http://h/s/m.mpd", 200, dash}});
    QFETCH(const pmxFlvSniffCallProcTask, task);
    QStringList urls;
    for (const MediaRequest &candidate : MediaRequestsAnalyzer(media).candidates(task))
        urls.append(QString::fromStdString(candidate.request.url));
    QTEST(urls.join(u' '), "urls");
}

void tst_MediaRequests::keepsTheSizeOfTheWhole()
{
    const auto part = [](const std::string &id, const std::string &range) {
        return Seen{id, "http://h/a.mp4", 206,
                    "Content-Type: video/mp4\r\nContent-Range: bytes " + range + "\r\n"};
    };
    const auto found =
        collect({part("1", "0-9/700000"), part("2", "10-19/*"), part("3", "20-29/*")})
            ->mediaRequests();
    QCOMPARE(found.size(), size_t(1));
    QCOMPARE(found.front().request.id, "3");
    QCOMPARE(found.front().size, std::optional<quint64>(700000));
}

void tst_MediaRequests::searchesPlayerVariables_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("urls");
    QTest::newRow("plain") << "http://h/a.flv"
                           << "http://h/a.flv";
    QTest::newRow("nothing") << "autoplay=true&skin=dark.zip"
                             << "";
    QTest::newRow("variables") << "a=1&file=http://h/a.mp4&b=2"
                               << "http://h/a.mp4";
    QTest::newRow("encoded") << "src=http%3A%2F%2Fh%2Fa.mp4%3Fk%3D1&x=y"
                             << "http://h/a.mp4?k=1";
    QTest::newRow("encoded twice") << "u=http%253A%252F%252Fh%252Fa.mp4"
                                   << "http://h/a.mp4";
    QTest::newRow("relative") << "file=../v/a.webm"
                              << "http://page/v/a.webm";
    QTest::newRow("JSON") << R"({"playlist":[{"url":"http://h/a.m3u8"}]})"
                          << "http://h/a.m3u8";
    QTest::newRow("once") << "a=http://h/a.mp4&b=http%3A//h/a.mp4"
                          << "http://h/a.mp4";
    QTest::newRow("no web address") << "file:///etc/a.mp4 javascript:x.mp4"
                                    << "";
    QTest::newRow("player program") << "http://h/player.swf?file=http://h/b.flv"
                                    << "http://h/b.flv";
    QTest::newRow("broken escapes") << "file=%zz%a.mp4%"
                                    << "";
}

void tst_MediaRequests::searchesPlayerVariables()
{
    QFETCH(const QString, text);
    QStringList urls;
    for (const QUrl &url :
         findMediaUrls(text.toStdString(), QUrl(QStringLiteral("http://page/dir/watch"))))
        urls.append(url.toString());
    QTEST(urls.join(u' '), "urls");
}

QTEST_GUILESS_MAIN(tst_MediaRequests)
#include "tst_mediarequests.moc"
