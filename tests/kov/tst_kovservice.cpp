#include "abstractjsonrequestsmanager.h"
#include "appremotefrontendclientmodule.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "fakeclock.h"
#include "kovcommandclient.h"
#include "kovservice.h"
#include "qtabstractsocketvhipc.h"
#include "qtappsettingsinmemorymanager.h"
#include "qtlocalsocket.h"
#include "temporaryconfig.h"
#include "uniqueint64idgen.h"
#include "vhipcmisctasksclient.h"
#include "vhipcsettings.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

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
    /// The changes that the application sent.
    QtAppAbstractSettingsManager::ValuesList told;
    AppRemoteFrontendClientModule module;
};

const QString intercept = u"WbInterceptDownloads"_qs;
const QString locale = u"LocaleName"_qs;

} // namespace

class TestKovService : public QObject {
    Q_OBJECT
    KovService::StartResult startService()
    {
        m_service = std::make_unique<KovService>(TemporaryConfig(m_folder->filePath(u"data"_qs)),
                                                 nullptr, m_serverName);
        return m_service->start();
    }

    /// The exit code and the output of a command.
    QString run(const QString &command) const
    {
        KovCommandClient client;
        QString answer;
        connect(&client, &KovCommandClient::finished, &client,
                [&answer](int exitCode, const QString &output) {
                    answer = QString::number(exitCode) + u' ' + output;
                });
        connect(&client, &KovCommandClient::notRunning, &client,
                [&answer] { answer = QStringLiteral("not running"); });
        client.run(m_serverName, command.split(u' ', Qt::SkipEmptyParts));
        return QTest::qWaitFor([&answer] { return !answer.isEmpty(); }) ? answer : QString();
    }

    std::unique_ptr<Host> readyHost() const
    {
        auto host = std::make_unique<Host>(m_serverName);
        return QTest::qWaitFor([&host] { return host->isReady(); }) ? std::move(host) : nullptr;
    }
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_serverName;
    std::unique_ptr<KovService> m_service;

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_serverName = m_folder->filePath(u"socket"_qs);
        QCOMPARE(startService(), KovService::StartResult::Serving);
        QCOMPARE(run(u"set DefaultDownloadPath "_qs + m_folder->filePath(u"downloads"_qs)),
                 u"0 "_qs);
    }
    void cleanup() { m_service.reset(); }

    void settingsSurviveTheService()
    {
        QCOMPARE(run(u"get Nope"_qs), u"1 kov: there is no setting \"Nope\"\n"_qs);
        QVERIFY(run(u"set SortBy"_qs).startsWith(u'2'));
        QCOMPARE(run(u"set LocaleName de\u20ac"_qs), u"0 "_qs);
        QCOMPARE(run(u"set MaxDownloadSpeed 5"_qs), u"0 "_qs);
        QCOMPARE(run(u"get TumSettingsFirstValue"_qs), u"0 5\n"_qs);
        m_service.reset();
        QCOMPARE(run(u"get LocaleName"_qs), u"not running"_qs);
        QCOMPARE(startService(), KovService::StartResult::Serving);
        const QStringList lines = run(u"list"_qs).split(u'\n', Qt::SkipEmptyParts);
        // 48 of the application, 53 of the engine without its two range markers, and 1.
        QCOMPARE(lines.size(), 48 + 53 + 1);
        QVERIFY(lines.contains(u"LocaleName=de\u20ac"_qs));
        QVERIFY(lines.contains(u"PartialDownloadFileSuffix=kovdownload"_qs));
    }

    void endsByItselfWhenIdle()
    {
        m_service.reset();
        FakeClock clock;
        KovService service(TemporaryConfig(m_folder->filePath(u"data"_qs)), nullptr, m_serverName,
                           nullptr, clock);
        const QSignalSpy stopped(&service, &KovService::stopped);
        QCOMPARE(service.start(), KovService::StartResult::Serving);
        {
            const auto host = readyHost();
            QVERIFY(host);
            clock.advance(3'600'000);
        }
        QTRY_COMPARE(clock.nextTimerIn(), 300'000);
        clock.advance(299'999);
        QVERIFY(QFile::exists(m_serverName));
        clock.advance(1);
        QVERIFY(!QFile::exists(m_serverName));
        QTRY_COMPARE(stopped.count(), 1);
    }

    void livesOnWhenAHostBreaksOff()
    {
        for (const char *bytes :
             {"0000 0100 6861", "FFFF FFFF", "0000 0004 FFFF FFFF", "7FFF FFFF"}) {
            QLocalSocket socket;
            socket.connectToServer(m_serverName);
            socket.write(QByteArray::fromHex(bytes));
            QVERIFY(socket.waitForBytesWritten());
        }
        QCOMPARE(run(u"get WbInterceptDownloads"_qs), u"0 1\n"_qs);
    }

    void settingsGoToAllButTheirAuthor()
    {
        const auto author = readyHost();
        const auto other = readyHost();
        QVERIFY(author && other);
        author->change(intercept, u"0"_qs);
        QTRY_COMPARE(other->value(intercept), u"0"_qs);
        QCOMPARE(run(u"get WbInterceptDownloads"_qs), u"0 0\n"_qs);
        QCOMPARE(author->told.size(), 0);

        QCOMPARE(run(u"set LocaleName fr"_qs), u"0 "_qs);
        QTRY_COMPARE(author->value(locale), u"fr"_qs);
        QTRY_COMPARE(other->value(locale), u"fr"_qs);
        QCOMPARE(author->told, (QtAppAbstractSettingsManager::ValuesList{{locale, u"fr"_qs}}));

        // Concurrently, the same settings and others.
        author->change(intercept, u"1"_qs);
        author->change(u"HideDockIcon"_qs, u"1"_qs);
        other->change(intercept, u"x"_qs);
        other->change(u"SortBy"_qs, u"7"_qs);
        for (const Host *host : {author.get(), other.get()}) {
            QTRY_COMPARE(host->value(intercept) + host->value(u"HideDockIcon"_qs)
                             + host->value(u"SortBy"_qs),
                         u"x17"_qs);
        }
    }

    /// Hosts cannot change the programs to run, not even by a reset.
    void someSettingsAreNotForHosts()
    {
        // A client that may reset, such as a front end of the application.
        const auto manager = QSharedPointer<QtAppSettingsInMemoryManager>::create();
        const auto socket = QSharedPointer<QtLocalSocket>::create();
        const auto part = QSharedPointer<VhIpcSettings>::create(manager, 127U, QSet<QString>());
        const QtAbstractSocketVhIpc link(socket, part, 0, false);
        socket->connectToServer(QtAbstractServerAddress(m_serverName), QIODeviceBase::ReadWrite);
        const auto host = readyHost();
        QVERIFY(host);
        QTRY_VERIFY(part->isReady());
        const QString program = u"AntivirusPath"_qs;
        run(u"set AntivirusPath /bin/true"_qs);
        host->settings->setValues({{program, u"/bin/evil"_qs}, {locale, u"ja"_qs}}, u"user"_qs);
        QTRY_COMPARE(manager->value(locale), u"ja"_qs);
        QTRY_COMPARE(host->value(program), u"/bin/true"_qs);

        manager->resetToDefaults(u"user"_qs);
        QTRY_COMPARE(host->value(locale), QString());
        QCOMPARE(host->value(program), u"/bin/true"_qs);
        QTRY_COMPARE(manager->value(program), u"/bin/true"_qs);
        QCOMPARE(run(u"get AntivirusPath"_qs), u"0 /bin/true\n"_qs);
    }

    void answersJsonRequestsWithAnEcho()
    {
        const auto host = readyHost();
        QVERIFY(host);
        const auto manager = host->module.jsonRequestsManager();
        const QSignalSpy received(manager.data(), &AbstractJsonRequestsManager::received);
        const QString request = u"{\"n\": 12345678901234567890, \"broken\": \"\u20ac"_qs;
        manager->send(42, request, true);
        manager->send(43, u"an answer needs none"_qs, false);
        host->module.vhIpcProcessor()
            ->part(VhIpcMiscTasksClient::partName())
            .objectCast<VhIpcMiscTasksClient>()
            ->activateMainWindow();
        manager->send(44, QString(), true);
        QTRY_COMPARE(received.count(), 2);
        const QJsonObject echo{
            {u"from"_qs, u"kov"_qs}, {u"kind"_qs, u"echo"_qs}, {u"request"_qs, request}};
        QCOMPARE(received.at(0).at(0), 42);
        QCOMPARE(received.at(0).at(2), false);
        QCOMPARE(QJsonDocument::fromJson(received.at(0).at(1).toString().toUtf8()).object(), echo);
        QCOMPARE(received.at(1).at(0), 44);
    }
};

QTEST_GUILESS_MAIN(TestKovService)
#include "tst_kovservice.moc"
