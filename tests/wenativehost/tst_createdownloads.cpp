#include "isolatedhost.h"
#include "linksuccessor.h"
#include "logcapture.h"
#include "rows.h"
#include "vhipcincomingdownloadskeys.h"
#include "vhipckeys.h"

#include <tuple>

using Reason = AbstractDownloadAbortReason;

class TestCreateDownloads : public QObject {
    Q_OBJECT
    std::unique_ptr<IsolatedHost> m_host;

    /// The answer to a task with these members and downloads.
    QString create(const QString &id, const QString &items, const QString &members = {})
    {
        return m_host->send(
            u"{'id':'%1','type':'create_downloads',"
            "'create_downloads':{'downloads':{'item':[%2]}%3}}"_qs.arg(id, items, members));
    }
    QString finish(qsizetype job, bool added, bool aborted = false, int reason = 0)
    {
        Q_EMIT m_host->client->incomingDownloadsProcessor()->finished(
            m_host->jobs.at(job).id, added, aborted, Reason(reason), u"no späce"_qs, false);
        return m_host->sent();
    }
    static QString answered(const QString &id, const QString &error, const QString &result = {})
    {
        return answer(id, u"create_downloads"_qs, error, result);
    }

private Q_SLOTS:
    void init() { m_host = std::make_unique<IsolatedHost>(); }
    void cleanup() { m_host.reset(); }

    void answers()
    {
        QVERIFY(m_host->connectToApplication());
        const std::tuple<bool, bool, int, const char *> cases[] = {
            {true, false, 0, "1"}, {true, true, 1, "1"},  {false, true, 0, "0"},
            {false, true, 1, "0"}, {false, true, 2, "1"}, {false, true, 3, "0"},
            {false, false, 0, ""}, {false, false, 2, ""}};
        for (const auto &[added, aborted, reason, result] : cases) {
            QCOMPARE(create(u"1"_qs, u"{'url':'http://a.org/b'}"_qs), u""_qs);
            const qsizetype job = m_host->jobs.size() - 1;
            QCOMPARE(finish(job, added, aborted, reason),
                     answered(u"1"_qs, *result ? u""_qs : u"no späce"_qs, QLatin1String(result)));
            QCOMPARE(finish(job, added, aborted, reason), u""_qs);
        }
    }

    void refusedAtOnce_data()
    {
        const Rows<QString, QString, QString> row("items", "members", "error");
        const QString one = u"{'url':'http://a.org/b'}"_qs;
        const QString caught = u",'catchedDownloads':'1'"_qs;
        row("nothing", {}, {}, u"invalid arguments"_qs);
        for (const char *const bad : {"{'x':'y'}", "{'url':5}", "'x'"})
            row(bad, one + u","_qs + QString::fromLatin1(bad), caught, u"invalid arguments"_qs);
        row("no valid address", u"{'url':''},{'url':'no scheme'},{'url':'http://[bad'}"_qs, {},
            u"invalid_parameter"_qs);
        row("caught", one, caught, u"ignoredDueSettings"_qs);
        row("caught, without rules", one, caught + u",'ignoreSettings':'1'"_qs, {});
        row("two caught", one + u","_qs + one, caught, {});
        row("picked", one, {}, {});
    }

    void refusedAtOnce()
    {
        QFETCH(const QString, items);
        QFETCH(const QString, members);
        QFETCH(const QString, error);
        const bool isRefusedHere = !error.isEmpty() && error != u"invalid_parameter"_qs;
        m_host->set(AppSettings::WbInterceptDownloads, "0");
        // There is no application beside this program.
        QCOMPARE(create(u"1"_qs, items, members),
                 answered(u"1"_qs, isRefusedHere ? error : u"app_not_installed"_qs));
        QVERIFY(m_host->connectToApplication());
        QCOMPARE(create(u"1"_qs, items, members),
                 error.isEmpty() ? QString() : answered(u"1"_qs, error));
        QCOMPARE(m_host->jobs.size(), error.isEmpty() ? 1 : 0);
        if (error.isEmpty())
            QCOMPARE(m_host->jobs.at(0).isBrowsersOwn, !members.isEmpty());
    }

    void jobOfATask()
    {
        QVERIFY(m_host->connectToApplication());
        create(u"1"_qs,
               u"{'url':'http://a.org/p%20q?x=%2Fé','suggestedName':'mé.zip',"
               "'httpReferer':'http://a.org/referer','documentUrl':'http://a.org/page',"
               "'userAgent':'agent','httpCookies':'a=b; c=d=e','httpPostData':'k=\\u0000v\\u0000',"
               "'fileSize':'5'},"
               "{'url':''},{'url':'http://[bad'},{'url':'ftp://a.org/2','httpReferer':'http://r',"
               "'documentUrl':'http://[p'}"_qs);
        QCOMPARE(m_host->jobs.size(), 1);
        const AbstractNewDownloadsRequest &request = m_host->jobs.constFirst().request;
        QCOMPARE(request.source, AbstractNewDownloadsRequestSource::Browser);
        QCOMPARE(request.downloads.size(), 2);
        QCOMPARE(request.selectedDownloads, QBitArray(2, true));
        QCOMPARE(request.preferredDownloadType, AbstractDownloadType::Any);

        AbstractDownloadPersistentInfo expected;
        expected.createdBy = AbstractDownloadCreatedBy::Browser;
        expected.userAgent = u"agent"_qs;
        expected.preferredFileTitle = u"mé.zip"_qs;
        expected.source.url = QUrl::fromEncoded("http://a.org/p%20q?x=%2F%C3%A9");
        expected.source.referer = u"http://a.org/referer"_qs;
        expected.source.webPageUrl = QUrl(u"http://a.org/page"_qs);
        expected.source.postData = QByteArray("k=\0v\0", 5);
        expected.source.cookies = {QNetworkCookie("a", "b"), QNetworkCookie("c", "d=e")};
        QCOMPARE(*request.downloads.at(0).info, expected);
        const AbstractDownloadSourceInfo &withoutPage = request.downloads.at(1).info->source;
        QCOMPARE(withoutPage.webPageUrl, QUrl(u"http://r"_qs));
        QCOMPARE(withoutPage.flags, 1U);

        // Only of the browser's own download the size is that of the file.
        for (const int size : {5, 0}) {
            create(u"2"_qs, u"{'url':'http://a.org/','fileSize':'%1'}"_qs.arg(size),
                   u",'catchedDownloads':'1','ignoreSettings':'1'"_qs);
            const auto &files = m_host->jobs.constLast().request.downloads.at(0).info->files;
            QCOMPARE(files.isEmpty() ? 0 : files.constFirst().size, size);
            QCOMPARE(files.isEmpty(), size == 0);
        }
    }

    void tasksInFlight()
    {
        QVERIFY(m_host->connectToApplication());
        const QString one = u"{'url':'http://a.org/b'}"_qs;
        for (const QString &id : {u"a"_qs, u"same"_qs, u"same"_qs})
            create(id, one);
        const QString video = u"{'id':'same','type':'video_sniffer',"
                              "'video_sniffer':{'url':'http://a.org/v.mp4'}}"_qs;
        m_host->send(video);
        m_host->send(video);
        QCOMPARE(m_host->jobs.size(), 5);
        QVERIFY(!m_host->jobs.at(3).isBrowsersOwn);
        QVERIFY(finish(3, false).contains(u"'id':'same','result':'','type':'video_sniffer'"_qs));
        // The outcome of the first task is not reported as that of the second, which replaced it.
        QCOMPARE(finish(1, true), u""_qs);
        QCOMPARE(finish(2, false), answered(u"same"_qs, u"no späce"_qs));
        QCOMPARE(finish(0, true), answered(u"a"_qs, u""_qs, u"1"_qs));
        const QString added = finish(4, true);
        QVERIFY(added.contains(u"'id':'same','result':'1','type':'video_sniffer'"_qs));
        QVERIFY(added.contains(u"'error2':''"_qs));
        m_host->send(video);
        QVERIFY(finish(5, false, true).contains(u"'error2':'no späce','result':'0'"_qs));
        create(u"same"_qs, one);
        QCOMPARE(finish(6, true), answered(u"same"_qs, u""_qs, u"1"_qs));
    }

    void lostDownloads()
    {
        QVERIFY(m_host->connectToApplication());
        const LogCapture log;
        QList<VhIpcQueuedMessage> left;
        for (const char *const members : {"a/file", "a/file','suggestedName':'b.zip", "", "a"}) {
            create(u"1"_qs, u"{'url':'http://host/%1'}"_qs.arg(QLatin1String(members)));
            const auto &job = m_host->jobs.constLast();
            left.append(
                {.message = {{VhIpcKeys::name(), VhIpcIncomingDownloadsKeys::partName()},
                             {VhIpcKeys::id(), job.id},
                             {VhIpcIncomingDownloadsKeys::request(), toVariantHash(job.request)}}});
        }
        const LostDownloads kept(*m_host->client->dataAccessHelper());
        {
            const auto &processor = *m_host->client->incomingDownloadsProcessor();
            const LinkSuccessor::DownloadsReport report(left, processor, kept);
            const LinkSuccessor::DownloadsReport none({}, processor, kept);
            finish(1, false);
            finish(3, true);
        }
        QCOMPARE(log.texts().filter(u"LinkSuccessor"_qs),
                 QStringList(u"[LinkSuccessor]: 1 of 4 downloads were delivered"_qs));
        const QString handshake = u"{'id':'1','type':'handshake','handshake':{}}"_qs;
        QStringList told = m_host->send(handshake).split(u'|').sliced(1);
        told.sort();
        QCOMPARE(told.size(), 3);
        const std::pair<QString, QString> expected[] = {{u"b.zip"_qs, u"no späce"_qs},
                                                        {u"file"_qs, u"no answer"_qs},
                                                        {u"host"_qs, u"no answer"_qs}};
        for (const auto &[name, reason] : expected)
            QVERIFY(told.filter(u"'result':'%1'"_qs.arg(name)).join(QString()).contains(reason));
        QCOMPARE(m_host->send(handshake).count(u'|'), 0); // told once
        QCOMPARE(log.texts().filter(u"3 downloads never reached"_qs).size(), 1);
        // 64 KiB are kept: a line is {"name":"...","reason":""} and its end.
        QVERIFY(log.texts().filter(u"cannot be kept"_qs).isEmpty());
        for (int i = 0; i < 66; ++i)
            kept.add({QString(1000, u'x'), {}});
        QCOMPARE(kept.take().size(), 64);
        QCOMPARE(log.texts().filter(u"cannot be kept"_qs).size(), 2);
        QVERIFY(kept.take().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestCreateDownloads)
#include "tst_createdownloads.moc"
