#include "isolatedclientmodule.h"
#include "keystatewatcher.h"
#include "pmxkovbhipccreatedownloadstaskprocessor.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipctaskresponse.h"
#include "remoteincomingdownloadsprocessor.h"
#include "wbeincomingdownloadsprocessor.h"
#include "webextensionsettingsmanager.h"

#include <QCoreApplication>
#include <QFile>
#include <QTest>

using namespace std::string_literals;
using Reason = AbstractDownloadAbortReason;
using Info = pmxKovBhIpcDownloadInfo;

namespace {

std::shared_ptr<pmxKovBhIpcTask> newTask(const char *id, std::initializer_list<const char *> urls)
{
    auto task = std::make_shared<pmxKovBhIpcTask>();
    task->id = id;
    task->type = "create_downloads";
    for (const char *url : urls) {
        auto info = std::make_shared<Info>();
        info->url = url;
        task->create_downloads.downloads.add_item_(std::move(info));
    }
    return task;
}

} // namespace

/// The program lies in a folder of its own, in which it can put an application and take it away.
class TestCreateDownloads : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void answers_data();
    void answers();
    void refusedAtOnce_data();
    void refusedAtOnce();
    void applicationNotInstalled();
    void applicationNotRunning();
    void captureRules_data();
    void captureRules();
    void jobOfADownload();
    void pageAndReferrer_data();
    void pageAndReferrer();
    void mediaKinds_data();
    void mediaKinds();
    void invalidUrlsAreLeftOut();
    void tasksInFlight();
    void taskOfTheSameId();

private:
    void process(const std::shared_ptr<pmxKovBhIpcTask> &task);
    void finish(qint64 id, bool added, bool aborted = false, Reason reason = Reason::None,
                const QString &error = QString());
    const AbstractDownloadPersistentInfo &handedOver(const Info &info);

    QFile m_application{QCoreApplication::applicationDirPath() + u"/kov"_qs};
    std::unique_ptr<IsolatedClientModule> m_client;
    QSharedPointer<WebExtensionSettingsManager> m_settings;
    QSharedPointer<WbeIncomingDownloadsProcessor> m_incoming;
    std::unique_ptr<pmxKovBhIpcCreateDownloadsTaskProcessor> m_processor;
    /// What the application was given.
    QList<AbstractNewDownloadsRequestJob> m_jobs;
    /// "ID: RESULT" or "ID: ERROR" of each answer.
    QStringList m_answers;
};

void TestCreateDownloads::init()
{
    QVERIFY(m_application.open(QIODevice::WriteOnly));
    m_application.close();
    m_client = std::make_unique<IsolatedClientModule>();
    m_client->bringUp();
    m_client->initializeSettings();
    m_settings = QSharedPointer<WebExtensionSettingsManager>::create(m_client->module());
    m_incoming = QSharedPointer<WbeIncomingDownloadsProcessor>::create(m_client->module());
    m_processor = std::make_unique<pmxKovBhIpcCreateDownloadsTaskProcessor>(
        m_settings, m_incoming, QSharedPointer<KeyStateWatcher>::create(45));
    connect(m_client->module()
                ->incomingDownloadsProcessor()
                .objectCast<RemoteIncomingDownloadsProcessor>()
                .data(),
            &RemoteIncomingDownloadsProcessor::sendJobToServer, m_incoming.data(),
            [this](const AbstractNewDownloadsRequestJob &job) { m_jobs.append(job); });
}

void TestCreateDownloads::cleanup()
{
    m_processor.reset();
    m_incoming.reset();
    m_settings.reset();
    m_client.reset();
    m_application.remove();
    m_jobs.clear();
    m_answers.clear();
}

void TestCreateDownloads::process(const std::shared_ptr<pmxKovBhIpcTask> &task)
{
    m_processor->process(task, [this, task](const auto &asked, const auto &response) {
        QCOMPARE(asked, task);
        QCOMPARE(response->type, "create_downloads"s);
        QVERIFY(response->result.empty() || response->error.empty());
        m_answers.append(
            QString::fromStdString(response->id + ": " + response->result + response->error));
    });
}

void TestCreateDownloads::finish(qint64 id, bool added, bool aborted, Reason reason,
                                 const QString &error)
{
    Q_EMIT m_client->module()->incomingDownloadsProcessor()->finished(id, added, aborted, reason,
                                                                      error, false);
}

const AbstractDownloadPersistentInfo &TestCreateDownloads::handedOver(const Info &info)
{
    const auto task = newTask("1", {});
    task->create_downloads.downloads.add_item_(std::make_shared<Info>(info));
    process(task);
    return *m_jobs.constLast().request.downloads.constFirst().info;
}

void TestCreateDownloads::answers_data()
{
    QTest::addColumn<bool>("added");
    QTest::addColumn<bool>("aborted");
    QTest::addColumn<int>("reason");
    QTest::addColumn<QString>("answer");
    QTest::newRow("added") << true << false << 0 << u"1: 1"_qs;
    QTest::newRow("added and aborted") << true << true << 1 << u"1: 1"_qs;
    QTest::newRow("aborted") << false << true << 0 << u"1: 0"_qs;
    QTest::newRow("aborted by the user") << false << true << 1 << u"1: 0"_qs;
    QTest::newRow("aborted, reason 2") << false << true << 2 << u"1: 1"_qs;
    QTest::newRow("aborted, unknown reason") << false << true << 3 << u"1: 0"_qs;
    QTest::newRow("failed") << false << false << 0 << u"1: no sp\u00e4ce"_qs;
    QTest::newRow("failed, reason 2") << false << false << 2 << u"1: no sp\u00e4ce"_qs;
}

void TestCreateDownloads::answers()
{
    QFETCH(bool, added);
    QFETCH(bool, aborted);
    QFETCH(int, reason);
    QFETCH(QString, answer);
    process(newTask("1", {"http://a.org/b"}));
    QCOMPARE(m_jobs.size(), 1);
    QVERIFY(m_answers.isEmpty());
    finish(m_jobs.constFirst().id + 1, true);
    QVERIFY(m_answers.isEmpty());
    for (int i = 0; i < 2; ++i) // told once only
        finish(m_jobs.constFirst().id, added, aborted, Reason(reason), u"no sp\u00e4ce"_qs);
    QCOMPARE(m_answers, QStringList(answer));
}

void TestCreateDownloads::refusedAtOnce_data()
{
    QTest::addColumn<std::shared_ptr<pmxKovBhIpcTask>>("task");
    QTest::addColumn<QString>("answer");
    QTest::newRow("no downloads") << newTask("1", {}) << u"1: invalid arguments"_qs;
    QTest::newRow("no valid URL") << newTask("1", {"", "no scheme", "http://[bad"})
                                  << u"1: invalid_parameter"_qs;
}

void TestCreateDownloads::refusedAtOnce()
{
    QFETCH(std::shared_ptr<pmxKovBhIpcTask>, task);
    QFETCH(QString, answer);
    process(task);
    QCOMPARE(m_answers, QStringList(answer));
    QVERIFY(m_jobs.isEmpty());
}

void TestCreateDownloads::applicationNotInstalled()
{
    m_application.remove();
    process(newTask("1", {"http://a.org/b"}));
    QCOMPARE(m_answers, QStringList(u"1: app_not_installed"_qs));

    // It runs all the same: it was removed, or moved, while it did.
    QVERIFY(m_client->listen());
    QTRY_VERIFY(m_client->module()->isConnected());
    process(newTask("2", {"http://a.org/b"}));
    QCOMPARE(m_jobs.size(), 1);
    QCOMPARE(m_answers.size(), 1);
}

void TestCreateDownloads::applicationNotRunning()
{
    QVERIFY(!m_client->module()->isConnected());
    process(newTask("1", {"http://a.org/b"}));
    QCOMPARE(m_jobs.size(), 1);
    QVERIFY(m_answers.isEmpty());
}

void TestCreateDownloads::captureRules_data()
{
    QTest::addColumn<bool>("catched");
    QTest::addColumn<bool>("ignoreSettings");
    QTest::addColumn<int>("downloads");
    QTest::addColumn<bool>("refused");
    QTest::newRow("caught") << true << false << 1 << true;
    QTest::newRow("asked for") << false << false << 1 << false;
    QTest::newRow("whatever the settings") << true << true << 1 << false;
    QTest::newRow("two at once") << true << false << 2 << false;
}

void TestCreateDownloads::captureRules()
{
    QFETCH(bool, catched);
    QFETCH(bool, ignoreSettings);
    QFETCH(int, downloads);
    QFETCH(bool, refused);
    WebExtensionSettings settings;
    settings.browser.monitor.enable = false;
    m_settings->setSettings(settings, true);
    const auto task = downloads == 1 ? newTask("1", {"http://a.org/b"})
                                     : newTask("1", {"http://a.org/b", "http://a.org/c"});
    task->create_downloads.catchedDownloads = catched;
    task->create_downloads.ignoreSettings = ignoreSettings;
    process(task);
    QCOMPARE(m_answers, refused ? QStringList(u"1: ignoredDueSettings"_qs) : QStringList());
    QCOMPARE(m_jobs.size(), refused ? 0 : 1);
}

void TestCreateDownloads::jobOfADownload()
{
    Info info;
    info.url = "http://a.org/p%20q?x=%2F\xc3\xa9";
    info.suggestedName = "m\xc3\xa9.zip";
    info.httpReferer = "http://a.org/referer";
    info.documentUrl = "http://a.org/page";
    info.userAgent = "agent";
    info.httpCookies = "a=b; c=d=e";
    info.httpPostData = "k=\0\xff"s;
    info.httpPostData.push_back('\0');
    const AbstractDownloadPersistentInfo &download = handedOver(info);

    QCOMPARE(download.source.url.toEncoded(), QByteArray("http://a.org/p%20q?x=%2F%C3%A9"));
    QCOMPARE(download.source.referer, u"http://a.org/referer"_qs);
    QCOMPARE(download.source.webPageUrl, QUrl(u"http://a.org/page"_qs));
    QCOMPARE(download.source.flags, 0U);
    QCOMPARE(download.source.postData, QByteArray("k=\0\xff\0", 5));
    QCOMPARE(download.source.cookies,
             QList<QNetworkCookie>({QNetworkCookie("a", "b"), QNetworkCookie("c", "d=e")}));
    QCOMPARE(download.userAgent, u"agent"_qs);
    QCOMPARE(download.preferredFileTitle, u"m\u00e9.zip"_qs);
    QCOMPARE(download.createdBy, AbstractDownloadCreatedBy::Browser);

    const AbstractNewDownloadsRequest &request = m_jobs.constLast().request;
    QCOMPARE(request.source, AbstractNewDownloadsRequestSource::Browser);
    QCOMPARE(request.selectedDownloads, QBitArray(1, true));
    QCOMPARE(request.preferredDownloadType, AbstractDownloadType::Any);
}

void TestCreateDownloads::pageAndReferrer_data()
{
    QTest::addColumn<std::string>("page");
    QTest::addColumn<std::string>("referrer");
    QTest::addColumn<QString>("jobPage");
    QTest::addColumn<bool>("isReferrer");
    QTest::newRow("both") << "http://p"s
                          << "http://r"s << u"http://p"_qs << false;
    QTest::newRow("no page") << ""s
                             << "http://r"s << u"http://r"_qs << true;
    QTest::newRow("page that is no URL") << "http://[p"s
                                         << "http://r"s << u"http://r"_qs << true;
    QTest::newRow("no referrer") << "http://p"s
                                 << ""s << u"http://p"_qs << false;
    QTest::newRow("neither") << ""s
                             << ""s << u""_qs << false;
}

void TestCreateDownloads::pageAndReferrer()
{
    QFETCH(std::string, page);
    QFETCH(std::string, referrer);
    QFETCH(QString, jobPage);
    QFETCH(bool, isReferrer);
    Info info;
    info.url = "http://a.org/b";
    info.documentUrl = page;
    info.httpReferer = referrer;
    const AbstractDownloadSourceInfo source = handedOver(info).source;
    QCOMPARE(source.webPageUrl, QUrl(jobPage));
    QCOMPARE(source.referer.toStdString(), referrer);
    QCOMPARE(source.flags, isReferrer ? 1U : 0U);
}

void TestCreateDownloads::mediaKinds_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("type");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("video") << 1 << 2;
    QTest::newRow("audio") << 2 << 1;
    QTest::newRow("stream") << 4 << 4;
    QTest::newRow("unknown") << 3 << 0;
}

void TestCreateDownloads::mediaKinds()
{
    QFETCH(int, kind);
    QFETCH(int, type);
    Info info;
    info.url = "http://a.org/b";
    info.mediaKind = Info::MediaKind(kind);
    handedOver(info);
    QCOMPARE(int(m_jobs.constLast().request.preferredDownloadType), type);
}

void TestCreateDownloads::invalidUrlsAreLeftOut()
{
    process(newTask("1", {"http://a.org/1", "", "http://[bad", "ftp://a.org/2"}));
    QCOMPARE(m_jobs.size(), 1);
    QStringList urls;
    for (const AbstractNewDownloadRequest &download : m_jobs.constFirst().request.downloads)
        urls.append(download.info->source.url.toString());
    QCOMPARE(urls, QStringList({u"http://a.org/1"_qs, u"ftp://a.org/2"_qs}));
    QCOMPARE(m_jobs.constFirst().request.selectedDownloads, QBitArray(2, true));
}

void TestCreateDownloads::tasksInFlight()
{
    for (const char *id : {"a", "b", "c"})
        process(newTask(id, {"http://a.org/b"}));
    QCOMPARE(m_jobs.size(), 3);
    finish(m_jobs.at(1).id, false, true, Reason::CancelledByUser);
    finish(m_jobs.at(2).id, false, false, Reason::None, u"failed"_qs);
    finish(m_jobs.at(0).id, true);
    QCOMPARE(m_answers, QStringList({u"b: 0"_qs, u"c: failed"_qs, u"a: 1"_qs}));
}

void TestCreateDownloads::taskOfTheSameId()
{
    const auto first = newTask("same", {"http://a.org/1"});
    const auto second = newTask("same", {"http://a.org/2"});
    process(first);
    process(second);
    QCOMPARE(m_jobs.size(), 2);
    // The first one's outcome is not the second one's.
    finish(m_jobs.at(0).id, true);
    QVERIFY(m_answers.isEmpty());
    finish(m_jobs.at(1).id, false, false, Reason::None, u"failed"_qs);
    QCOMPARE(m_answers, QStringList(u"same: failed"_qs));
    // Another one after it starts afresh.
    process(newTask("same", {"http://a.org/3"}));
    finish(m_jobs.at(2).id, true);
    QCOMPARE(m_answers.constLast(), u"same: 1"_qs);
}

QTEST_GUILESS_MAIN(TestCreateDownloads)
#include "tst_createdownloads.moc"
