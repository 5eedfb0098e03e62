#include "abstractincomingdownloadsprocessor.h"
#include "abstractjsonrequestsmanager.h"
#include "appremotefrontendclientmodule.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "kovcommandclient.h"
#include "kovservice.h"
#include "qtabstractsocketvhipc.h"
#include "qtappconfigbase.h"
#include "qtappsettingsinmemorymanager.h"
#include "qtlocalsocket.h"
#include "testhttpserver.h"
#include "uniqueint64idgen.h"
#include "vhipcmisctasksclient.h"
#include "vhipcsettings.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

class TemporaryConfig : public QtAppConfigBase {
public:
    explicit TemporaryConfig(const QString &path) : m_path(path) { }
    QDir dataDir() const override { return QDir(m_path); }

private:
    const QString m_path;
};

/// A host's end of the link, with its copy of the settings.
struct Host {
    explicit Host(const QString &serverName)
        : module(QSharedPointer<QtLocalSocket>::create(), 0, false,
                 QtAbstractServerAddress(serverName), settings,
                 QSharedPointer<UniqueInt64IdGen>::create(), false)
    {
        QObject::connect(settings.data(), &QtAppAbstractSettingsManager::valuesChanged, &module,
                         [this](const auto &values, const QString &source) {
                             if (source == VhIpcSettings::changesSource())
                                 told.append(values);
                         });
        module.initialize(true);
    }
    ~Host() { module.initialize(false); }
    Q_DISABLE_COPY_MOVE(Host)

    bool isReady() const { return module.vhIpcProcessor()->isReady(); }
    QString value(const QString &name) const { return settings->value(name); }
    void change(const QString &name, const QString &value)
    {
        settings->setValues({{name, value}}, QStringLiteral("user"));
    }

    QSharedPointer<QtAppSettingsInMemoryManager> settings =
        QSharedPointer<QtAppSettingsInMemoryManager>::create();
    /// The changes that the application told of.
    QtAppAbstractSettingsManager::ValuesList told;
    AppRemoteFrontendClientModule module;
};

struct Answer {
    int exitCode = -1;
    QString output;
    bool operator==(const Answer &) const = default;
};

AbstractNewDownloadsRequestJob jobFor(AbstractIncomingDownloadsProcessor &processor,
                                      const QList<QUrl> &urls)
{
    AbstractNewDownloadsRequestJob job = processor.createJob();
    for (const QUrl &url : urls) {
        const auto info = std::make_shared<AbstractDownloadPersistentInfo>();
        info->source.url = url;
        job.request.downloads.append({info});
    }
    job.request.selectedDownloads.fill(true, urls.size());
    return job;
}

const QString intercept = u"WbInterceptDownloads"_qs;
const QString locale = u"LocaleName"_qs;

} // namespace

class TestKovService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void commands_data();
    void commands();
    void settings_survive_the_service();
    void settings_go_to_all_but_their_author();
    void hosts_cannot_name_programs_to_run();
    void a_reset_reaches_all_hosts();
    void performs_the_selected_downloads();
    void refuses_a_job_without_anything_to_download();
    void answers_json_requests_with_an_echo();
    void lives_on_when_a_host_breaks_off();
    void replaces_what_a_killed_service_left();
    void leaves_when_another_serves();
    void tells_why_it_cannot_serve();
    void quits_on_command();
    void one_of_twenty_programs_stays();

private:
    KovService::StartResult startService();
    Answer run(const QStringList &arguments) const;
    std::unique_ptr<Host> readyHost() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_serverName;
    std::unique_ptr<KovService> m_service;
};

void TestKovService::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_serverName = m_folder->filePath(u"socket"_qs);
    QCOMPARE(startService(), KovService::StartResult::Serving);
    QCOMPARE(run({u"set"_qs, u"DefaultDownloadPath"_qs, m_folder->filePath(u"downloads"_qs)}),
             (Answer{0, QString()}));
}

void TestKovService::cleanup() { m_service.reset(); }

KovService::StartResult TestKovService::startService()
{
    m_service = std::make_unique<KovService>(TemporaryConfig(m_folder->filePath(u"data"_qs)),
                                             nullptr, m_serverName);
    return m_service->start();
}

Answer TestKovService::run(const QStringList &arguments) const
{
    KovCommandClient client;
    Answer answer;
    connect(&client, &KovCommandClient::finished, &client,
            [&answer](int exitCode, const QString &output) {
                answer = {exitCode, output};
            });
    client.run(m_serverName, arguments);
    return QTest::qWaitFor([&answer] { return answer.exitCode >= 0; }) ? answer : Answer{};
}

std::unique_ptr<Host> TestKovService::readyHost() const
{
    auto host = std::make_unique<Host>(m_serverName);
    return QTest::qWaitFor([&host] { return host->isReady(); }) ? std::move(host) : nullptr;
}

void TestKovService::commands_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output");
    QTest::newRow("a default") << QStringList{u"get"_qs, intercept} << 0 << u"1\n"_qs;
    QTest::newRow("a setting without a value")
        << QStringList{u"get"_qs, u"TorrentsFolder"_qs} << 0 << u"\n"_qs;
    QTest::newRow("an unknown setting")
        << QStringList{u"get"_qs, u"Nope"_qs} << 1 << u"there is no setting \"Nope\"\n"_qs;
    QTest::newRow("setting an unknown setting")
        << QStringList{u"set"_qs, u"wbInterceptDownloads"_qs, u"1"_qs} << 1
        << u"there is no setting \"wbInterceptDownloads\"\n"_qs;
    QTest::newRow("no jobs") << QStringList{u"jobs"_qs} << 0 << QString();
}

void TestKovService::commands()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, output);
    QCOMPARE(run(arguments), (Answer{exitCode, output}));

    const QList<QStringList> bad{{u"dance"_qs}, {u"set"_qs, intercept}, {u"jobs"_qs, u"1"_qs}, {}};
    for (const QStringList &words : bad)
        QCOMPARE(run(words).exitCode, 2);
}

void TestKovService::settings_survive_the_service()
{
    QCOMPARE(run({u"set"_qs, locale, u"de \u20ac"_qs}), (Answer{0, QString()}));
    m_service.reset();
    QCOMPARE(run({u"get"_qs, locale}), (Answer{1, u"kov is not running\n"_qs}));
    QCOMPARE(startService(), KovService::StartResult::Serving);
    QCOMPARE(run({u"get"_qs, locale}), (Answer{0, u"de \u20ac\n"_qs}));

    const QStringList lines = run({u"list"_qs}).output.split(u'\n', Qt::SkipEmptyParts);
    // 48 of the application and 53 of the engine, whose two range markers are no settings.
    QCOMPARE(lines.size(), 48 + 53);
    QVERIFY(lines.contains(u"LocaleName=de \u20ac"_qs));
    QVERIFY(lines.contains(u"PartialDownloadFileSuffix=kovdownload"_qs));
}

void TestKovService::settings_go_to_all_but_their_author()
{
    const auto author = readyHost();
    const auto other = readyHost();
    QVERIFY(author && other);
    QCOMPARE(author->value(intercept), u"1"_qs);

    author->change(intercept, u"0"_qs);
    QTRY_COMPARE(other->value(intercept), u"0"_qs);
    QCOMPARE(run({u"get"_qs, intercept}), (Answer{0, u"0\n"_qs}));
    QCOMPARE(author->told.size(), 0);

    QCOMPARE(run({u"set"_qs, locale, u"fr"_qs}), (Answer{0, QString()}));
    QTRY_COMPARE(author->value(locale), u"fr"_qs);
    QTRY_COMPARE(other->value(locale), u"fr"_qs);
    QCOMPARE(author->told, (QtAppAbstractSettingsManager::ValuesList{{locale, u"fr"_qs}}));

    // At the same moment, the same and others.
    author->change(intercept, u"1"_qs);
    author->change(u"HideDockIcon"_qs, u"1"_qs);
    other->change(intercept, u"x"_qs);
    other->change(u"SortBy"_qs, u"7"_qs);
    const auto values = [](const Host &host) {
        return QStringList{host.value(intercept), host.value(u"HideDockIcon"_qs),
                           host.value(u"SortBy"_qs)};
    };
    QTRY_COMPARE(values(*author), (QStringList{u"x"_qs, u"1"_qs, u"7"_qs}));
    QTRY_COMPARE(values(*other), (QStringList{u"x"_qs, u"1"_qs, u"7"_qs}));
}

void TestKovService::hosts_cannot_name_programs_to_run()
{
    const QString program = u"LaunchExternalAppOnDownloadCompletion_AppPath"_qs;
    QCOMPARE(run({u"set"_qs, program, u"/bin/true"_qs}), (Answer{0, QString()}));
    const auto host = readyHost();
    QVERIFY(host);
    host->settings->setValues({{program, u"/bin/evil"_qs}, {locale, u"ja"_qs}}, u"user"_qs);
    QTRY_COMPARE(run({u"get"_qs, locale}).output, u"ja\n"_qs);
    QCOMPARE(run({u"get"_qs, program}).output, u"/bin/true\n"_qs);
    QTRY_COMPARE(host->value(program), u"/bin/true"_qs);
}

void TestKovService::a_reset_reaches_all_hosts()
{
    // A client that may reset, as a front-end of the application may.
    const auto manager = QSharedPointer<QtAppSettingsInMemoryManager>::create();
    const auto socket = QSharedPointer<QtLocalSocket>::create();
    const auto part = QSharedPointer<VhIpcSettings>::create(manager, 127U, QSet<QString>());
    const QtAbstractSocketVhIpc link(socket, part, 0, false);
    socket->connectToServer(QtAbstractServerAddress(m_serverName), QIODeviceBase::ReadWrite);
    QTRY_VERIFY(part->isReady());
    const auto host = readyHost();
    QVERIFY(host);
    const QString program = u"AntivirusPath"_qs;
    run({u"set"_qs, program, u"/bin/true"_qs});
    run({u"set"_qs, locale, u"fr"_qs});
    QTRY_COMPARE(host->value(locale), u"fr"_qs);
    QTRY_COMPARE(manager->value(locale), u"fr"_qs);

    manager->resetToDefaults(u"user"_qs);
    QTRY_COMPARE(host->value(locale), QString());
    QTRY_COMPARE(host->value(program), u"/bin/true"_qs);
    QTRY_COMPARE(manager->value(program), u"/bin/true"_qs);
    QCOMPARE(run({u"get"_qs, locale}), (Answer{0, u"\n"_qs}));
}

void TestKovService::performs_the_selected_downloads()
{
    TestHttpServer server;
    server.answer("/a", TestHttpServer::ok("first"));
    server.answer("/b", TestHttpServer::ok("second"));
    const auto host = readyHost();
    QVERIFY(host);
    const auto processor = host->module.incomingDownloadsProcessor();
    const QSignalSpy finished(processor.data(), &AbstractIncomingDownloadsProcessor::finished);

    AbstractNewDownloadsRequestJob job =
        jobFor(*processor,
               {server.url(u"/a"_qs), server.url(u"/no"_qs), server.url(u"/b"_qs),
                server.url(u"/missing"_qs), QUrl(u"ftp://127.0.0.1/x"_qs)});
    job.request.selectedDownloads.clearBit(1);
    AbstractDownloadPersistentInfo &first = *job.request.downloads.first().info;
    first.preferredFileTitle = u"../name.txt"_qs;
    first.source.referer = u"http://page/"_qs;
    first.source.cookies = {QNetworkCookie("c", "1")};
    first.userAgent = u"Browser"_qs;
    job.request.downloads[2].info->source.postData = "body";
    processor->process(job);

    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0),
             (QList<QVariant>{job.id, true, false,
                              QVariant::fromValue(AbstractDownloadAbortReason::None), QString(),
                              false}));

    const QString downloads = m_folder->filePath(u"downloads"_qs);
    const QString path = downloads + u"/name.txt"_qs;
    const auto jobs = [this] { return run({u"jobs"_qs}).output.split(u'\n'); };
    QTRY_COMPARE(jobs().filter(u"\tfinished\t"_qs).size(), 2);
    QTRY_COMPARE(jobs().filter(u"\tfailed\t"_qs).size(), 1);
    QCOMPARE(jobs().at(0),
             u"1\tfinished\t5\t5\t"_qs + path + u'\t' + server.url(u"/a"_qs).toString() + u'\t');
    QVERIFY(jobs().at(2).startsWith(u"3\tfailed\t0\t-1\t\t"_qs));
    QVERIFY(jobs().at(2).contains(u"Not Found"_qs));
    QCOMPARE(QDir(downloads).entryList(QDir::Files), (QStringList{u"b"_qs, u"name.txt"_qs}));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "first");

    QHash<QByteArray, TestHttpServer::Request> requests;
    const auto received = server.requests();
    for (const TestHttpServer::Request &request : received)
        requests.insert(request.path, request);
    QCOMPARE(received.size(), 3);
    QCOMPARE(requests.value("/a").headers.value("referer"), "http://page/");
    QCOMPARE(requests.value("/a").headers.value("cookie"), "c=1");
    QCOMPARE(requests.value("/a").headers.value("user-agent"), "Browser");
    QCOMPARE(requests.value("/b").method, "POST");
    QCOMPARE(requests.value("/b").body, "body");
}

void TestKovService::refuses_a_job_without_anything_to_download()
{
    const auto host = readyHost();
    QVERIFY(host);
    const auto processor = host->module.incomingDownloadsProcessor();
    const QSignalSpy finished(processor.data(), &AbstractIncomingDownloadsProcessor::finished);
    processor->process(jobFor(*processor, {}));
    processor->process(jobFor(*processor, {QUrl(u"file:///etc/passwd"_qs), QUrl()}));
    QTRY_COMPARE(finished.count(), 2);
    for (const QList<QVariant> &outcome : finished) {
        QCOMPARE(outcome.at(1).toBool(), false);
        QCOMPARE(outcome.at(2).toBool(), false);
        QCOMPARE(outcome.at(4).toString(), u"nothing that can be downloaded"_qs);
    }
    QCOMPARE(run({u"jobs"_qs}), (Answer{0, QString()}));
}

void TestKovService::answers_json_requests_with_an_echo()
{
    const auto host = readyHost();
    const auto bystander = readyHost();
    QVERIFY(host && bystander);
    const auto manager = host->module.jsonRequestsManager();
    const QSignalSpy received(manager.data(), &AbstractJsonRequestsManager::received);
    const QSignalSpy receivedByOther(bystander->module.jsonRequestsManager().data(),
                                     &AbstractJsonRequestsManager::received);
    const QString request = u"{\"n\": 12345678901234567890, \"broken\": \"\u20ac"_qs;
    manager->send(42, request, true);
    manager->send(43, u"an answer needs none"_qs, false);
    manager->send(44, QString(), true);
    QTRY_COMPARE(received.count(), 2);
    QCOMPARE(received.at(0).at(0), 42);
    QCOMPARE(received.at(0).at(2), false);
    QCOMPARE(
        QJsonDocument::fromJson(received.at(0).at(1).toString().toUtf8()).object(),
        (QJsonObject{{u"from"_qs, u"kov"_qs}, {u"kind"_qs, u"echo"_qs}, {u"request"_qs, request}}));
    QCOMPARE(received.at(1).at(0), 44);
    QCOMPARE(receivedByOther.count(), 0);
    host->module.vhIpcProcessor()->miscTasksPart()->activateMainWindow();
    manager->send(45, u"still there"_qs, true);
    QTRY_COMPARE(received.count(), 3);
}

void TestKovService::lives_on_when_a_host_breaks_off()
{
    for (const QByteArray &bytes :
         {QByteArray("\0\0\1\0half a", 10), QByteArray("\xff\xff\xff\xff", 4),
          QByteArray("\0\0\0\4\xff\xff\xff\xff", 8), QByteArray("\x7f\xff\xff\xff", 4)}) {
        QLocalSocket socket;
        socket.connectToServer(m_serverName);
        QVERIFY(socket.waitForConnected());
        socket.write(bytes);
        QVERIFY(socket.waitForBytesWritten());
        socket.abort();
    }
    QCOMPARE(run({u"get"_qs, intercept}), (Answer{0, u"1\n"_qs}));
}

void TestKovService::replaces_what_a_killed_service_left()
{
    m_service.reset();
    QProcess killed;
    killed.setProcessEnvironment([this] {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_qs, m_folder->filePath(u"data"_qs));
        environment.insert(u"TMPDIR"_qs, m_folder->path());
        return environment;
    }());
    const auto serve = [&killed, this] {
        killed.start(QStringLiteral(KOV_PROGRAM), {u"-service"_qs});
        m_serverName = m_folder->filePath(u"kov6fs"_qs + QString::number(::getuid()));
        return QTest::qWaitFor([this] { return run({u"get"_qs, intercept}).exitCode == 0; });
    };
    QVERIFY(serve());
    killed.kill();
    QTRY_COMPARE(killed.state(), QProcess::NotRunning);
    QVERIFY(QFile::exists(m_serverName));
    QVERIFY(serve());
    QCOMPARE(run({u"quit"_qs}), (Answer{0, QString()}));
    QTRY_COMPARE(killed.state(), QProcess::NotRunning);
    QCOMPARE(killed.exitCode(), 0);
    QVERIFY(!QFile::exists(m_serverName));
}

void TestKovService::leaves_when_another_serves()
{
    KovService second(TemporaryConfig(m_folder->filePath(u"data"_qs)), nullptr, m_serverName);
    QCOMPARE(second.start(), KovService::StartResult::AnotherServes);
    // With another data folder it does not take the socket away, either.
    KovService stranger(TemporaryConfig(m_folder->filePath(u"other"_qs)), nullptr, m_serverName);
    QCOMPARE(stranger.start(), KovService::StartResult::AnotherServes);
    QCOMPARE(run({u"get"_qs, intercept}), (Answer{0, u"1\n"_qs}));
}

void TestKovService::tells_why_it_cannot_serve()
{
    QFile inTheWay(m_folder->filePath(u"file"_qs));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    KovService noData(TemporaryConfig(inTheWay.fileName()), nullptr, m_folder->filePath(u"s"_qs));
    QCOMPARE(noData.start(), KovService::StartResult::Failed);
    QVERIFY(noData.errorString().contains(inTheWay.fileName()));
    KovService noSocket(TemporaryConfig(m_folder->filePath(u"other"_qs)), nullptr,
                        m_folder->filePath(u"no/such/folder/s"_qs));
    QCOMPARE(noSocket.start(), KovService::StartResult::Failed);
    QVERIFY(noSocket.errorString().contains(u"no/such/folder"_qs));
}

void TestKovService::quits_on_command()
{
    const auto host = readyHost();
    QVERIFY(host);
    const QSignalSpy stopped(m_service.get(), &KovService::stopped);
    QCOMPARE(run({u"quit"_qs}), (Answer{0, QString()}));
    QTRY_COMPARE(stopped.count(), 1);
    QTRY_VERIFY(!host->module.isConnected());
    QCOMPARE(run({u"jobs"_qs}), (Answer{1, u"kov is not running\n"_qs}));
}

void TestKovService::one_of_twenty_programs_stays()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_qs, m_folder->filePath(u"xdg"_qs));
    environment.insert(u"TMPDIR"_qs, m_folder->path());
    std::vector<std::unique_ptr<QProcess>> programs;
    for (int i = 0; i < 20; ++i) {
        programs.push_back(std::make_unique<QProcess>());
        programs.back()->setProcessEnvironment(environment);
        programs.back()->start(QStringLiteral(KOV_PROGRAM), {u"-service"_qs});
    }
    const auto running = [&programs] {
        return std::count_if(programs.cbegin(), programs.cend(), [](const auto &program) {
            return program->state() != QProcess::NotRunning;
        });
    };
    QTRY_COMPARE_WITH_TIMEOUT(running(), 1, 60'000);

    QProcess command;
    command.setProcessEnvironment(environment);
    command.start(QStringLiteral(KOV_PROGRAM), {u"get"_qs, intercept});
    QVERIFY(command.waitForFinished());
    QCOMPARE(command.exitCode(), 0);
    QCOMPARE(command.readAllStandardOutput(), "1\n");
    command.start(QStringLiteral(KOV_PROGRAM), {u"quit"_qs});
    QVERIFY(command.waitForFinished());
    QCOMPARE(command.exitCode(), 0);
    QTRY_COMPARE(running(), 0);
    for (const auto &program : programs) {
        QCOMPARE(program->exitStatus(), QProcess::NormalExit);
        QCOMPARE(program->exitCode(), 0);
    }
}

QTEST_GUILESS_MAIN(TestKovService)
#include "tst_kovservice.moc"
