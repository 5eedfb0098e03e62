#include "qtabstractsocketvhipc.h"
#include "qtlocalsocket.h"
#include "qtsocketconnectionkeeper.h"
#include "recordingpart.h"
#include "serverprocess.h"
#include "turnedclock.h"

#include <QDir>
#include <QLocalServer>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using Then = ServerProcess::Then;

namespace {

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
        .size();
}

/// 16 bytes announced, 2 sent.
QByteArray halfAFrame() { return QByteArray::fromHex("00000010 6161"); }

} // namespace

/// The link over a real socket to servers that fail; only the waits of the keeper are not real.
class TestLinkFaults : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void serverKilledInTheMiddleOfAFrame200Times();
    void halfClosed_data();
    void halfClosed();
    void neverReading();

private:
    QByteArray path() const { return m_dir->filePath(QStringLiteral("server")).toUtf8(); }
    bool isConnected() const { return m_socket->isConnected(); }

    qsizetype m_descriptors = 0;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<TurnedClock> m_clock;
    QSharedPointer<QtLocalSocket> m_socket;
    QSharedPointer<RecordingPart> m_part;
    std::unique_ptr<QtAbstractSocketVhIpc> m_link;
    std::unique_ptr<QtSocketConnectionKeeper> m_keeper;
};

void TestLinkFaults::init()
{
    // What Qt opens once for the process is there from now on.
    QLocalSocket().connectToServer(QStringLiteral("/nowhere"));
    QCoreApplication::processEvents();
    m_descriptors = openDescriptors();

    m_dir = std::make_unique<QTemporaryDir>();
    m_clock = std::make_unique<TurnedClock>();
    m_socket = QSharedPointer<QtLocalSocket>::create();
    m_socket->setRequiredServerUser(::getuid());
    m_part = QSharedPointer<RecordingPart>::create();
    m_link = std::make_unique<QtAbstractSocketVhIpc>(m_socket, m_part, 0, false);
    m_keeper = std::make_unique<QtSocketConnectionKeeper>(m_socket, nullptr, *m_clock);
    m_keeper->setServerAddress(QtAbstractServerAddress(QString::fromUtf8(path())));
}

void TestLinkFaults::cleanup()
{
    m_keeper.reset();
    m_link.reset();
    m_part.reset();
    m_socket.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(openDescriptors(), m_descriptors);
}

void TestLinkFaults::serverKilledInTheMiddleOfAFrame200Times()
{
    m_keeper->enable(true);
    m_clock->advance(0);
    int wait = 300;
    for (int restart = 0; restart < 200; ++restart) {
        QCOMPARE(m_clock->nextTimerIn(), wait);
        ServerProcess server({.path = path(), .greeting = halfAFrame()});
        QVERIFY(server.isListening());
        m_clock->advance(wait);
        QVERIFY(isConnected());
        QTRY_COMPARE(m_socket->ioDevice()->bytesAvailable(), 2);
        // Every other connection lasts long enough to start the waits anew.
        m_clock->advance(0);
        const bool lasts = restart % 2 == 0;
        m_clock->advance(lasts ? 3000 : 2000);
        server.kill();
        QTRY_VERIFY(!isConnected());
        m_clock->advance(0);
        wait = lasts ? 300 : wait * 2;
    }
    QCOMPARE(m_part->maps().size(), 0);
    QCOMPARE(m_part->connects().size(), 400);
}

void TestLinkFaults::halfClosed_data()
{
    QTest::addColumn<Then>("then");
    QTest::newRow("server stops writing") << Then::StopsWriting;
    QTest::newRow("server stops reading") << Then::StopsReading;
}

void TestLinkFaults::halfClosed()
{
    QFETCH(const Then, then);
    const ServerProcess server({.path = path(), .greeting = halfAFrame(), .then = then});
    QVERIFY(server.isListening());
    m_keeper->enable(true);
    for (const int wait : {300, 600, 1200}) {
        QVERIFY(isConnected());
        QTRY_VERIFY(m_socket->ioDevice()->bytesAvailable() == 2 || !isConnected());
        if (then == Then::StopsReading)
            m_link->send({{QStringLiteral("name"), QString(1'000'000, u'x')}});
        QTRY_VERIFY(!isConnected());
        m_clock->advance(0);
        QCOMPARE(m_clock->nextTimerIn(), wait);
        m_clock->advance(wait);
    }
    QCOMPARE(m_part->maps().size(), 0);
}

void TestLinkFaults::neverReading()
{
    {
        const ServerProcess server({.path = path(), .greeting = {}});
        QVERIFY(server.isListening());
        m_keeper->enable(true);
        QVERIFY(isConnected());
        for (int i = 0; i < 20; ++i)
            m_link->send({{QStringLiteral("name"), QString(500'000, u'x')}});
        // The kernel takes what it has room for, the rest waits here and nothing else does.
        QTRY_VERIFY(m_socket->ioDevice()->bytesToWrite() < 20'000'000);
        QVERIFY(m_socket->ioDevice()->bytesToWrite() > 10'000'000);
    }
    QTRY_VERIFY(!isConnected());
    QCOMPARE(m_socket->ioDevice()->bytesToWrite(), 0);

    // The next server hears nothing of what was meant for the last one.
    QLocalServer::removeServer(QString::fromUtf8(path()));
    QLocalServer server;
    QVERIFY(server.listen(QString::fromUtf8(path())));
    m_clock->advance(0);
    m_clock->advance(300);
    QVERIFY(isConnected());
    m_link->send({{QStringLiteral("b"), true}});
    QVERIFY(server.waitForNewConnection(10'000));
    const std::unique_ptr<QLocalSocket> peer(server.nextPendingConnection());
    const QByteArray expected =
        QByteArray::fromHex("00000010 00000001 00000002 0062 00000001 00 01");
    QTRY_COMPARE(peer->bytesAvailable(), expected.size());
    QCOMPARE(peer->readAll().toHex(), expected.toHex());
}

QTEST_GUILESS_MAIN(TestLinkFaults)
#include "tst_linkfaults.moc"
