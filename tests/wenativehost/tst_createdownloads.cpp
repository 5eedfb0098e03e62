#include "isolatedhost.h"

#include <QTest>

#include <tuple>

using Reason = AbstractDownloadAbortReason;

class TestCreateDownloads : public QObject {
    Q_OBJECT
    std::unique_ptr<IsolatedHost> m_host;

    /// The answer to a task with those members and downloads.
    QString create(const QString &id, const QString &items, const QString &members = {})
    {
        return m_host->tell(
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

    void refusedAtOnce()
    {
        // No application lies beside this program.
        QCOMPARE(create(u"1"_qs, u"{'url':'http://a.org/b'}"_qs),
                 answered(u"1"_qs, u"app_not_installed"_qs));
        QVERIFY(m_host->connectToApplication());
        QCOMPARE(create(u"1"_qs, u""_qs), answered(u"1"_qs, u"invalid arguments"_qs));
        QCOMPARE(create(u"1"_qs, u"{'url':''},{'url':'no scheme'},{'url':'http://[bad'}"_qs),
                 answered(u"1"_qs, u"invalid_parameter"_qs));
        QCOMPARE(m_host->jobs.size(), 0);
    }

    void captureRules()
    {
        QVERIFY(m_host->connectToApplication());
        m_host->set(AppSettings::WbInterceptDownloads, "0");
        const QString one = u"{'url':'http://a.org/b'}"_qs;
        QCOMPARE(create(u"1"_qs, one, u",'catchedDownloads':'1'"_qs),
                 answered(u"1"_qs, u"ignoredDueSettings"_qs));
        create(u"2"_qs, one);
        create(u"3"_qs, one, u",'catchedDownloads':'1','ignoreSettings':'1'"_qs);
        create(u"4"_qs, one + u","_qs + one, u",'catchedDownloads':'1'"_qs);
        QCOMPARE(m_host->jobs.size(), 3);
    }

    void jobOfATask()
    {
        QVERIFY(m_host->connectToApplication());
        create(u"1"_qs,
               u"{'url':'http://a.org/p%20q?x=%2Fé','suggestedName':'mé.zip',"
               "'httpReferer':'http://a.org/referer','documentUrl':'http://a.org/page',"
               "'userAgent':'agent','httpCookies':'a=b; c=d=e','httpPostData':'k=\\u0000v\\u0000'},"
               "{'url':''},{'url':'http://[bad'},{'url':'ftp://a.org/2','httpReferer':'http://r',"
               "'documentUrl':'http://[p'}"_qs);
        QCOMPARE(m_host->jobs.size(), 1);
        const AbstractNewDownloadsRequest &request = m_host->jobs.constFirst().request;
        QCOMPARE(request.source, AbstractNewDownloadsRequestSource::Browser);
        QCOMPARE(request.downloads.size(), 2);
        QCOMPARE(request.selectedDownloads, QBitArray(2, true));
        QCOMPARE(request.preferredDownloadType, AbstractDownloadType::Any);

        const AbstractDownloadPersistentInfo &download = *request.downloads.at(0).info;
        QCOMPARE(download.source.url.toEncoded(), QByteArray("http://a.org/p%20q?x=%2F%C3%A9"));
        QCOMPARE(download.source.referer, u"http://a.org/referer"_qs);
        QCOMPARE(download.source.webPageUrl, QUrl(u"http://a.org/page"_qs));
        QCOMPARE(download.source.flags, 0U);
        QCOMPARE(download.source.postData, QByteArray("k=\0v\0", 5));
        QCOMPARE(download.source.cookies,
                 QList<QNetworkCookie>({QNetworkCookie("a", "b"), QNetworkCookie("c", "d=e")}));
        QCOMPARE(download.userAgent, u"agent"_qs);
        QCOMPARE(download.preferredFileTitle, u"mé.zip"_qs);
        QCOMPARE(download.createdBy, AbstractDownloadCreatedBy::Browser);

        const AbstractDownloadSourceInfo &withoutPage = request.downloads.at(1).info->source;
        QCOMPARE(withoutPage.webPageUrl, QUrl(u"http://r"_qs));
        QCOMPARE(withoutPage.flags, 1U);
    }

    void tasksInFlight()
    {
        QVERIFY(m_host->connectToApplication());
        for (const QString &id : {u"a"_qs, u"b"_qs, u"same"_qs, u"same"_qs})
            create(id, u"{'url':'http://a.org/b'}"_qs);
        QCOMPARE(m_host->jobs.size(), 4);
        QCOMPARE(finish(1, false, true), answered(u"b"_qs, u""_qs, u"0"_qs));
        QCOMPARE(finish(0, true), answered(u"a"_qs, u""_qs, u"1"_qs));
        // The first one's outcome is not that of the second, which replaced it.
        QCOMPARE(finish(2, true), u""_qs);
        QCOMPARE(finish(3, false), answered(u"same"_qs, u"no späce"_qs));
        create(u"same"_qs, u"{'url':'http://a.org/3'}"_qs);
        QCOMPARE(finish(4, true), answered(u"same"_qs, u""_qs, u"1"_qs));
    }
};

QTEST_GUILESS_MAIN(TestCreateDownloads)
#include "tst_createdownloads.moc"
