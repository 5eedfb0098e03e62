// The client module as a whole, against a bare server under the application's name.

#include "abstractincomingdownloadsprocessor.h"
#include "abstractjsonrequestsmanager.h"
#include "appclientmodule.h"
#include "appclientsettingsinitializer.h"
#include "appdataaccesshelper.h"
#include "appremotefrontendclientmodule.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "appservername.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappconfigbase.h"
#include "qtobjectfactory.h"
#include "rows.h"
#include "turnedclock.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>

#include <memory>

namespace {

class TemporaryConfig : public QtAppConfigBase {
public:
    explicit TemporaryConfig(const QString &path) : m_path(path) { }
    QDir dataDir() const override { return QDir(m_path); }

private:
    const QString m_path;
};

const QString interceptDownloads = u"WbInterceptDownloads"_qs;
const QString localeName = u"LocaleName"_qs;
const QString user = u"user"_qs;
/// More than the buffers of a local socket take.
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
        // The question for the settings, {"name": "settings", "reason": "queryAll"}, is asked at
        // once.
        constexpr int size = 4 + 4 + (4 + 8 + 9 + 16) + (4 + 12 + 9 + 16);
        return QTest::qWaitFor([&] { return peer->bytesAvailable() == size; }) ? std::move(peer)
                                                                               : nullptr;
    }
    bool isGoingDown() const { return m_module->isInitializeRunning(false); }
    bool databaseExists() const { return QDir(m_folder->path()).exists(u"data/db.sqlite"_qs); }
    /// The settings as another process reads and writes them.
    QSharedPointer<QtAppAbstractSettingsManager> storedSettings() const
    {
        return AppDataAccessHelper(QDir(m_folder->filePath(u"data"_qs)), nullptr).settings();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QtQObjectsTracker> m_tracker;
    std::unique_ptr<QLocalServer> m_server;
    std::unique_ptr<TurnedClock> m_clock;
    QSharedPointer<AppClientModule> m_module;

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        qputenv("TMPDIR", QFile::encodeName(m_folder->path()));
        m_tracker = std::make_unique<QtQObjectsTracker>();
        m_clock = std::make_unique<TurnedClock>();
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
        for (int i = 0; i < 3; ++i) {
            QVERIFY(!m_module->settingsManager() && !m_module->jsonRequestsManager());
            const auto peer = connectedPeer();
            QVERIFY(peer && m_module->isConnected());
            const auto processor = m_module->remoteFrontendClientModule()->vhIpcProcessor();
            peer->abort();
            QTRY_VERIFY(!m_module->isConnected());
            // Nothing but work for the application requires it to run. Ids begin anew with the
            // link.
            QVERIFY(!processor->isRequiringServer());
            QCOMPARE(m_module->incomingDownloadsProcessor()->createJob().id, 1);
            m_module->jsonRequestsManager()->send(2, u"{}"_qs, true);
            QVERIFY(processor->isRequiringServer());
            m_module->initialize(false);
            QTRY_VERIFY(!isGoingDown());
            // Taken down, it stays away.
            m_clock->advance(60'000);
            QVERIFY(!m_server->waitForNewConnection(0));
        }
        QVERIFY(!databaseExists());
    }

    void settingsComeFromTheLocalStoreWhenAskedFor()
    {
        storedSettings()->setValues({{localeName, u"de_DE"_qs}}, user);
        m_server->close();
        m_module->initialize(true);
        const auto initializer = m_module->settingsInitializer();
        const auto settings = m_module->settingsManager();
        const QSignalSpy initialized(initializer.data(),
                                     &AppClientSettingsInitializer::settingsInitialized);
        const QSignalSpy changed(settings.data(), &QtAppAbstractSettingsManager::allValuesChanged);
        QVERIFY(!initializer->isSettingsInitialized());
        QCOMPARE(settings->value(interceptDownloads), QString());
        for (int i = 0; i < 2; ++i) {
            initializer->initializeSettings();
            QVERIFY(initializer->isSettingsInitialized());
            QCOMPARE(settings->value(localeName), u"de_DE"_qs);
            QCOMPARE(settings->value(interceptDownloads), u"1"_qs);
            initializer->onVhIpcSettingsReadyStateChanged(true);
        }
        QCOMPARE(initialized.count(), 1);
        QCOMPARE(changed, (QList<QVariantList>{{u"AppClientSettingsInitializer"_qs}}));
    }

    void settingsAreTheApplicationsWhileItIsThere()
    {
        auto peer = connectedPeer();
        QVERIFY(peer);
        const auto initializer = m_module->settingsInitializer();
        const auto settings = m_module->settingsManager();
        const QSignalSpy initialized(initializer.data(),
                                     &AppClientSettingsInitializer::settingsInitialized);
        QByteArray body;
        QDataStream stream(&body, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_5_12);
        stream << QVariantHash{{u"name"_qs, u"settings"_qs},
                               {u"reason"_qs, u"all"_qs},
                               {u"values"_qs, QVariantHash{{localeName, u"uk"_qs}}},
                               {u"defaultValues"_qs, QVariantHash{{interceptDownloads, u"0"_qs}}}};
        QDataStream peerStream(peer.get());
        peerStream << body; // as a frame: its length and itself
        QTRY_COMPARE(initialized.count(), 1);
        QCOMPARE(settings->value(localeName), u"uk"_qs);
        QCOMPARE(settings->value(interceptDownloads), u"0"_qs);
        initializer->initializeSettings();
        QCOMPARE(initialized.count(), 1);
        settings->setValues({{localeName, u"fr"_qs}}, user);
        settings->resetToDefaults(user);
        QVERIFY(!databaseExists());

        // Without it, changes are stored for later.
        m_server->close();
        peer.reset();
        QTRY_VERIFY(!m_module->isConnected());
        settings->setValues({{localeName, u"ja"_qs}, {interceptDownloads, u"2"_qs}}, user);
        QCOMPARE(storedSettings()->allValues().value(localeName), u"ja"_qs);
        QCOMPARE(storedSettings()->allValues().value(interceptDownloads), u"2"_qs);
        settings->resetToDefaults(user);
        QCOMPARE(storedSettings()->allValues().value(localeName), QString());
    }

    void isDownAtOnceWithNothingPending()
    {
        m_module->initialize(false); // was never up
        QCoreApplication::processEvents();
        QVERIFY(!isGoingDown());
        const auto peer = connectedPeer();
        QVERIFY(peer);
        m_module->initialize(false);
        QCoreApplication::processEvents();
        QVERIFY(!isGoingDown() && !m_module->isConnected());
        m_server->close();
        m_module->initialize(true);
        m_module->jsonRequestsManager()->send(1, u"waits for a connection"_qs, true);
        m_module->initialize(false);
        QCoreApplication::processEvents();
        QVERIFY(!isGoingDown());
    }

    void isDownWhenWhatWasSentHasLeft_data()
    {
        const Rows<int> row("then");
        row("the peer reads all", 0);
        row("the peer goes", 1);
        row("two seconds pass", 2);
    }

    void isDownWhenWhatWasSentHasLeft()
    {
        QFETCH(const int, then);
        auto peer = connectedPeer();
        QVERIFY(peer);
        peer->readAll();
        peer->setReadBufferSize(1); // what is not read stays in the system
        m_module->jsonRequestsManager()->send(1, QString(hugeTextLength, u'x'), true);
        m_module->initialize(false);
        m_module->initialize(false); // asked for again, which changes nothing
        m_clock->advance(1999);
        QVERIFY(isGoingDown() && m_module->isConnected());

        qint64 received = 0;
        if (then == 0) {
            connect(peer.get(), &QLocalSocket::readyRead, peer.get(),
                    [&] { received += peer->readAll().size(); });
            peer->setReadBufferSize(0);
            received += peer->readAll().size();
        } else if (then == 1) {
            peer.reset();
        } else {
            m_clock->advance(1);
        }
        QTRY_VERIFY(!isGoingDown());
        if (then == 0) {
            QTRY_COMPARE(peer->state(), QLocalSocket::UnconnectedState);
            QVERIFY(received > qint64{2} * hugeTextLength); // UTF-16
        }
    }
};

QTEST_GUILESS_MAIN(TestAppClientModule)
#include "tst_appclientmodule.moc"
