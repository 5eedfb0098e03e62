// The client module as a whole, against a bare server under the application's name.

#include "abstractincomingdownloadsprocessor.h"
#include "abstractjsonrequestsmanager.h"
#include "appclientmodule.h"
#include "appclientsettingsinitializer.h"
#include "appclientsettingswriter.h"
#include "appdataaccesshelper.h"
#include "applink.h"
#include "appremotefrontendclientmodule.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "fakeclock.h"
#include "logcapture.h"
#include "qtappabstractsettingsmanager.h"
#include "qtobjectfactory.h"
#include "qtvhbodycodec.h"
#include "rows.h"
#include "temporaryconfig.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>

#include <memory>

namespace {

const QString interceptDownloads = u"WbInterceptDownloads"_qs;
const QString localeName = u"LocaleName"_qs;
const QString userSource = u"user"_qs;
/// More than fits into the buffers of a local socket.
constexpr int hugeTextLength = 4 * 1024 * 1024;

} // namespace

class TestAppClientModule : public QObject {
    Q_OBJECT
    /// Brings the module up; the application's end of the connection.
    std::unique_ptr<QLocalSocket> connectedPeer()
    {
        m_module->initialize(true);
        if (!QTest::qWaitFor([this] { return m_server->hasPendingConnections(); }))
            return nullptr;
        std::unique_ptr<QLocalSocket> peer(m_server->nextPendingConnection());
        peer->setParent(nullptr);
        // The request for the settings, {"name": "settings", "reason": "queryAll"}, is sent at
        // once.
        constexpr int size = 4 + 4 + (4 + 8 + 9 + 16) + (4 + 12 + 9 + 16);
        return QTest::qWaitFor([&] { return peer->bytesAvailable() == size; }) ? std::move(peer)
                                                                               : nullptr;
    }
    bool isGoingDown() const { return m_module->isInitializeRunning(false); }
    /// The stored settings, accessed as by another process.
    QSharedPointer<QtAppAbstractSettingsManager> storedSettings() const
    {
        return AppDataAccessHelper(QDir(m_folder->filePath(u"data"_qs)), nullptr).settings();
    }

    const QByteArray m_formerTmpDir = qgetenv("TMPDIR");
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QtQObjectsTracker> m_tracker;
    std::unique_ptr<QLocalServer> m_server;
    std::unique_ptr<FakeClock> m_clock;
    QSharedPointer<AppClientModule> m_module;

private Q_SLOTS:
    void init()
    {
        qputenv("TMPDIR", m_formerTmpDir); // or the folder would be inside the previous one
        m_folder = std::make_unique<QTemporaryDir>();
        qputenv("TMPDIR", QFile::encodeName(m_folder->path()));
        m_tracker = std::make_unique<QtQObjectsTracker>();
        m_clock = std::make_unique<FakeClock>();
        m_server = std::make_unique<QLocalServer>();
        QVERIFY(m_server->listen(appServerName()));
        m_module = qtCreateObject<AppClientModule>(
            QSharedPointer<TemporaryConfig>::create(m_folder->filePath(u"data"_qs)), nullptr,
            nullptr, *m_clock);
    }

    void cleanup()
    {
        m_module->initialize(false);
        QTRY_VERIFY(!isGoingDown());
        m_module.reset();
        QCOMPARE(m_tracker->aliveObjects(), QStringList());
        m_server.reset();
    }

    void comesUpAgain()
    {
        m_module->initialize(false); // was never up
        for (int i = 0; i < 3; ++i) {
            QVERIFY(!isGoingDown() && !m_module->settingsManager());
            const auto peer = connectedPeer();
            QVERIFY(peer && m_module->isConnected() && !peer->readAll().isEmpty());
            // Only work for the application requires it to run. Ids start over with the link.
            const auto processor = m_module->remoteFrontendClientModule()->vhIpcProcessor();
            QCOMPARE(m_module->incomingDownloadsProcessor()->createJob().id, 1);
            if (i > 0) {
                peer->abort();
                QTRY_VERIFY(!m_module->isConnected());
                QVERIFY(!processor->isRequiringServer());
                m_module->jsonRequestsManager()->send(2, u"{}"_qs, true);
                QVERIFY(processor->isRequiringServer());
            }
            m_module->initialize(false);
            // After the take-down, which is immediate, it does not reconnect.
            QVERIFY(!isGoingDown() && !m_module->isConnected());
            m_clock->advance(60'000);
            QVERIFY(!m_server->waitForNewConnection(0));
        }
        QVERIFY(!QDir(m_folder->path()).exists(u"data/db.sqlite"_qs));
    }

    void settings()
    {
        storedSettings()->setValues({{localeName, u"de_DE"_qs}}, userSource);
        auto peer = connectedPeer();
        QVERIFY(peer);
        const auto initializer = m_module->settingsInitializer();
        const auto settings = m_module->settingsManager();
        const QSignalSpy initialized(initializer.data(),
                                     &AppClientSettingsInitializer::settingsInitialized);
        QCOMPARE(settings->value(interceptDownloads), QString());
        // The application's, once they arrive; until then, on request, the stored ones.
        initializer->initializeSettings();
        QCOMPARE(settings->value(localeName), u"de_DE"_qs);
        QCOMPARE(settings->value(interceptDownloads), u"1"_qs);
        const QVariantHash all{{u"name"_qs, u"settings"_qs},
                               {u"reason"_qs, u"all"_qs},
                               {u"values"_qs, QVariantHash{{localeName, u"uk"_qs}}},
                               {u"defaultValues"_qs, QVariantHash{{interceptDownloads, u"0"_qs}}}};
        QDataStream stream(peer.get());
        stream << QtVhBodyCodec::toDataStream(all); // its length and its bytes
        QTRY_COMPARE(settings->value(localeName), u"uk"_qs);
        QCOMPARE(settings->value(interceptDownloads), u"0"_qs);
        initializer->initializeSettings();
        QCOMPARE(initialized.count(), 1);
        QCOMPARE(settings->value(localeName), u"uk"_qs);
        settings->setValues({{localeName, u"fr"_qs}}, userSource);
        QCOMPARE(storedSettings()->allValues().value(localeName), u"de_DE"_qs);

        // Without it, changes are stored for later.
        m_server->close();
        peer.reset();
        QTRY_VERIFY(!m_module->isConnected());
        QCOMPARE(storedSettings()->allValues().value(localeName), u"fr"_qs); // not confirmed
        settings->setValues({{localeName, u"ja"_qs}}, userSource);
        QCOMPARE(storedSettings()->allValues().value(localeName), u"ja"_qs);
        settings->resetToDefaults(userSource);
        QCOMPARE(storedSettings()->allValues().value(localeName), QString());
    }

    /// A store that cannot be opened for a while.
    void storeThatFails()
    {
        using Outcome = AppClientSettingsWriter::Outcome;
        const QString path = m_folder->filePath(u"data/db.sqlite"_qs);
        QVERIFY(QDir().mkpath(path));
        m_server->close();
        m_module->initialize(true);
        const auto settings = m_module->settingsManager();
        QList<Outcome> outcomes;
        connect(m_module->settingsWriter().data(), &AppClientSettingsWriter::outcomeChanged, this,
                [&](Outcome outcome) { outcomes += outcome; });
        m_module->settingsInitializer()->initializeSettings();
        QCOMPARE(settings->value(interceptDownloads), u"1"_qs); // the default
        settings->setValues({{localeName, u"ja"_qs}}, userSource);
        m_clock->advance(AppClientSettingsWriter::retryAfterMs);
        QCOMPARE(outcomes, QList<Outcome>{Outcome::Failed});
        QVERIFY(QDir(path).removeRecursively());
        storedSettings()->setValues({{interceptDownloads, u"0"_qs}}, userSource);
        m_clock->advance(AppClientSettingsWriter::retryAfterMs);
        QCOMPARE(outcomes, (QList<Outcome>{Outcome::Failed, Outcome::Stored}));
        QCOMPARE(storedSettings()->allValues().value(localeName), u"ja"_qs);
        m_module->settingsInitializer()->initializeSettings();
        QCOMPARE(settings->value(interceptDownloads), u"0"_qs);

        // The last retry is at the end, when nobody is told any more.
        QVERIFY(QFile::remove(path) && QDir().mkpath(path));
        settings->setValues({{localeName, u"fr"_qs}}, userSource);
        QVERIFY(QDir(path).removeRecursively());
        m_module->initialize(false);
        QCOMPARE(outcomes.size(), 3);
        QCOMPARE(storedSettings()->allValues().value(localeName), u"fr"_qs);
    }

    void waitsForWhatNobodyTakesOver()
    {
        const LogCapture log;
        QList<VhIpcQueuedMessage> given;
        m_module->setHandOver([&](const QList<VhIpcQueuedMessage> &messages) {
            given += messages;
            return false;
        });
        m_server->close();
        m_module->initialize(true);
        m_module->jsonRequestsManager()->send(7, u"text"_qs, true);
        m_clock->advance(10'000);
        auto job = m_module->incomingDownloadsProcessor()->createJob();
        job.isBrowsersOwn = true;
        m_module->incomingDownloadsProcessor()->process(job);
        m_module->initialize(false);
        m_module->remoteFrontendClientModule()->initialize(false); // they are given once
        QVERIFY(log.texts().contains(u"[AppServerLauncher]: launching server..."_qs));
        QCOMPARE(given.size(), 1);
        QCOMPARE(given.at(0).message.value(u"id"_qs), 7);
        QCOMPARE(given.at(0).waitedMs, 10'000);
        m_clock->advance(19'999);
        QVERIFY(isGoingDown());
        m_clock->advance(1);
        QTRY_VERIFY(!isGoingDown());
    }

    void waitsForWhatWasSent_data()
    {
        const Rows<bool, bool, int> row("isDownload", "isHeld", "withinMs");
        row("a text that the application does not read", false, false, 1500);
        row("a download that the application does not answer", true, false, 1200);
        row("a download that waited for the application", true, true, 31'200);
    }

    void waitsForWhatWasSent()
    {
        QFETCH(const bool, isDownload);
        QFETCH(const bool, isHeld);
        QFETCH(const int, withinMs);
        std::unique_ptr<QLocalSocket> peer;
        if (isHeld) {
            m_server->close();
            m_module->setHandOver([](const auto &) { return false; });
            m_module->initialize(true);
        } else {
            peer = connectedPeer();
            QVERIFY(peer && !peer->readAll().isEmpty());
        }
        const auto downloads = m_module->incomingDownloadsProcessor();
        if (isHeld) {
            downloads->process(downloads->createJob());
        } else if (isDownload) {
            const QSignalSpy sent(m_module->remoteFrontendClientModule().data(),
                                  &AppRemoteFrontendClientModule::sentAllData);
            downloads->process(downloads->createJob());
            QCOMPARE(sent.size(), 1);
        } else {
            peer->setReadBufferSize(1); // unread data stays in the kernel
            m_module->jsonRequestsManager()->send(1, QString(hugeTextLength, u'x'), true);
        }
        m_module->initialize(false);
        m_module->initialize(false); // a second request changes nothing
        if (isHeld) {
            QVERIFY(m_server->listen(appServerName()));
            QVERIFY(QTest::qWaitFor([&] {
                m_clock->advance(100);
                return m_module->isConnected();
            }));
            QCoreApplication::sendPostedEvents();
        }
        m_clock->advance(withinMs - 1);
        QVERIFY(isGoingDown() && m_module->isConnected());
        m_clock->advance(1);
        // It only gets the end of the stream, and closes the connection itself.
        if (isDownload)
            QVERIFY(m_module->isConnected());
        QTRY_VERIFY(!isGoingDown());
    }
};

QTEST_GUILESS_MAIN(TestAppClientModule)
#include "tst_appclientmodule.moc"
