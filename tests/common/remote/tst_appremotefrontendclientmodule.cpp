#include "abstractincomingdownloadsprocessor.h"
#include "abstractjsonrequestsmanager.h"
#include "appremotefrontendclientmodule.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "qtappsettingsinmemorymanager.h"
#include "qtlocalsocket.h"
#include "qtobjectfactory.h"
#include "turnedclock.h"
#include "uniqueint64idgen.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

/// More than the buffers of a local socket take.
constexpr int hugeTextLength = 4 * 1024 * 1024;

} // namespace

class TestAppRemoteFrontendClientModule : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void connects_and_tells_of_it();
    void knows_its_conversations();
    void takes_effect_on_its_own_thread();
    void tells_when_everything_has_left();
    void takes_down_at_once_with_nothing_pending_data();
    void takes_down_at_once_with_nothing_pending();
    void takes_down_when_everything_has_left();
    void takes_down_after_two_seconds_at_most();
    void takes_down_when_the_peer_goes();
    void comes_up_again();

private:
    /// Brings the module up and returns the server's end of the connection.
    std::unique_ptr<QLocalSocket> connectedPeer();
    void send(const QString &json) { m_module->jsonRequestsManager()->send(1, json, true); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QtQObjectsTracker> m_tracker;
    std::unique_ptr<QLocalServer> m_server;
    std::unique_ptr<TurnedClock> m_clock;
    QSharedPointer<QtLocalSocket> m_socket;
    QSharedPointer<AppRemoteFrontendClientModule> m_module;
};

void TestAppRemoteFrontendClientModule::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_tracker = std::make_unique<QtQObjectsTracker>();
    m_server = std::make_unique<QLocalServer>();
    QVERIFY(m_server->listen(m_folder->filePath(u"server"_qs)));
    m_clock = std::make_unique<TurnedClock>();
    m_socket = qtCreateObject<QtLocalSocket>();
    m_module = qtCreateObject<AppRemoteFrontendClientModule>(
        m_socket, 0, false, QtAbstractServerAddress(m_server->fullServerName()),
        qtCreateObject<QtAppSettingsInMemoryManager>(), QSharedPointer<UniqueInt64IdGen>::create(),
        false, nullptr, *m_clock);
}

void TestAppRemoteFrontendClientModule::cleanup()
{
    m_module.reset();
    m_socket.reset();
    QCOMPARE(m_tracker->aliveObjects(), QStringList());
    m_server.reset();
    m_clock.reset();
}

std::unique_ptr<QLocalSocket> TestAppRemoteFrontendClientModule::connectedPeer()
{
    m_module->initialize(true);
    if (!QTest::qWaitFor([this] { return m_server->hasPendingConnections(); }))
        return nullptr;
    std::unique_ptr<QLocalSocket> peer(m_server->nextPendingConnection());
    peer->setParent(nullptr);
    // The question for the settings, which is asked at once, is not to be waited for later.
    const bool asked = QTest::qWaitFor([&] { return peer->bytesAvailable() > 0; });
    return asked && m_socket->ioDevice()->bytesToWrite() == 0 ? std::move(peer) : nullptr;
}

void TestAppRemoteFrontendClientModule::connects_and_tells_of_it()
{
    const QSignalSpy connected(m_module.data(),
                               &AppRemoteFrontendClientModule::connectedStateChanged);
    QVERIFY(!m_module->isConnected());
    const auto peer = connectedPeer();
    QVERIFY(peer);
    QVERIFY(m_module->isConnected());
    peer->abort();
    QTRY_VERIFY(!m_module->isConnected());
    QCOMPARE(static_cast<const QList<QList<QVariant>> &>(connected),
             (QList<QList<QVariant>>{{true}, {false}}));
    m_module->initialize(false);
}

void TestAppRemoteFrontendClientModule::knows_its_conversations()
{
    m_server->close();
    QVERIFY(!m_module->vhIpcProcessor());
    m_module->initialize(true);
    const auto processor = m_module->vhIpcProcessor();
    const auto className = [&processor](const QString &name) {
        return QByteArray(processor->part(name)->metaObject()->className());
    };
    QCOMPARE(className(u"settings"_qs), "VhIpcSettings");
    QCOMPARE(className(u"incomingDownloads"_qs), "VhIpcIncomingDownloadsClient");
    QCOMPARE(className(u"jsonRequests"_qs), "VhIpcJsonRequests");
    QCOMPARE(className(u"miscTasks"_qs), "VhIpcMiscTasksClient");

    // Ids of both kinds come from the one generator.
    QCOMPARE(m_module->incomingDownloadsProcessor()->createJob().id, 1);
    QCOMPARE(m_module->jsonRequestsManager()->nextId(), 2);

    // Nothing but work for the application requires it to run.
    QVERIFY(!processor->isRequiringServer());
    send(u"{}"_qs);
    QVERIFY(processor->isRequiringServer());
    m_module->initialize(false);
    QVERIFY(!m_module->vhIpcProcessor());
}

void TestAppRemoteFrontendClientModule::takes_effect_on_its_own_thread()
{
    QThread *thread = nullptr;
    connect(
        m_module.data(), &QtAbstractModule::initializeRunning, m_module.data(),
        [seen = &thread] { *seen = QThread::currentThread(); }, Qt::DirectConnection);
    const std::unique_ptr<QThread> worker(QThread::create([this] { m_module->initialize(true); }));
    worker->start();
    QVERIFY(worker->wait());
    QVERIFY(!m_module->vhIpcProcessor());
    QTRY_VERIFY(m_module->vhIpcProcessor());
    QCOMPARE(thread, m_module->thread());
    QCOMPARE(m_module->vhIpcProcessor()->thread(), m_module->thread());
    m_module->initialize(false);
}

void TestAppRemoteFrontendClientModule::tells_when_everything_has_left()
{
    const auto peer = connectedPeer();
    QVERIFY(peer);
    const QSignalSpy sentAllData(m_module.data(), &AppRemoteFrontendClientModule::sentAllData);
    send(u"one"_qs);
    send(u"two"_qs);
    QTRY_COMPARE(sentAllData.count(), 1);
    send(u"three"_qs);
    QTRY_COMPARE(sentAllData.count(), 2);
    m_module->initialize(false);
}

void TestAppRemoteFrontendClientModule::takes_down_at_once_with_nothing_pending_data()
{
    QTest::addColumn<bool>("up");
    QTest::addColumn<bool>("connected");
    QTest::newRow("connected") << true << true;
    QTest::newRow("not connected, with a text that waits") << true << false;
    QTest::newRow("never brought up") << false << false;
}

void TestAppRemoteFrontendClientModule::takes_down_at_once_with_nothing_pending()
{
    QFETCH(bool, up);
    QFETCH(bool, connected);
    if (!connected)
        m_server->close();
    else
        QVERIFY(connectedPeer());
    if (up && !connected) {
        m_module->initialize(true);
        send(u"waits"_qs);
    }
    const QSignalSpy running(m_module.data(), &QtAbstractModule::initializeRunning);
    m_module->initialize(false);
    QCOMPARE(static_cast<const QList<QList<QVariant>> &>(running),
             (QList<QList<QVariant>>{{true, false}, {false, false}}));
    QCOMPARE(m_socket->state(), QtAbstractSocket::UnconnectedState);
}

void TestAppRemoteFrontendClientModule::takes_down_when_everything_has_left()
{
    const auto peer = connectedPeer();
    QVERIFY(peer);
    peer->readAll();
    peer->setReadBufferSize(1); // what is not read stays in the system
    send(QString(hugeTextLength, u'x'));
    m_module->initialize(false);
    QVERIFY(m_module->isInitializeRunning(false));
    m_module->initialize(false); // asked for again, which changes nothing

    qint64 received = 0;
    connect(peer.get(), &QLocalSocket::readyRead, peer.get(),
            [&] { received += peer->readAll().size(); });
    peer->setReadBufferSize(0);
    received += peer->readAll().size();
    QTRY_VERIFY(!m_module->isInitializeRunning(false));
    QTRY_COMPARE(peer->state(), QLocalSocket::UnconnectedState);
    QVERIFY(received > qint64{2} * hugeTextLength); // UTF-16
    QCOMPARE(m_clock->monotonicMs(), 0);
    QCOMPARE(m_clock->nextTimerIn(), -1);
}

void TestAppRemoteFrontendClientModule::takes_down_after_two_seconds_at_most()
{
    const auto peer = connectedPeer();
    QVERIFY(peer);
    peer->setReadBufferSize(1);
    send(QString(hugeTextLength, u'x'));
    m_module->initialize(false);
    m_clock->advance(1999);
    QVERIFY(m_module->isInitializeRunning(false));
    QVERIFY(m_module->isConnected());
    m_clock->advance(1);
    QVERIFY(!m_module->isInitializeRunning(false));
    QCOMPARE(m_socket->state(), QtAbstractSocket::UnconnectedState);
}

void TestAppRemoteFrontendClientModule::takes_down_when_the_peer_goes()
{
    auto peer = connectedPeer();
    QVERIFY(peer);
    peer->setReadBufferSize(1);
    send(QString(hugeTextLength, u'x'));
    m_module->initialize(false);
    QVERIFY(m_module->isInitializeRunning(false));
    peer.reset();
    QTRY_VERIFY(!m_module->isInitializeRunning(false));
    QCOMPARE(m_clock->monotonicMs(), 0);
}

void TestAppRemoteFrontendClientModule::comes_up_again()
{
    for (int i = 0; i < 3; ++i) {
        const auto peer = connectedPeer();
        QVERIFY(peer);
        m_module->initialize(false);
        QVERIFY(!m_module->isConnected());
        // Taken down, it stays away.
        m_clock->advance(60'000);
        QVERIFY(!m_server->waitForNewConnection(0));
    }
}

QTEST_GUILESS_MAIN(TestAppRemoteFrontendClientModule)
#include "tst_appremotefrontendclientmodule.moc"
