#include "logcapture.h"
#include "qtlocalsocket.h"
#include "serverprocess.h"

#include <QLocalServer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

#include <memory>

namespace {

/// What a QtLocalSocket tells, in order.
class Story {
public:
    explicit Story(QtLocalSocket &socket)
    {
        QObject::connect(&socket, &QtLocalSocket::stateChanged, &m_context,
                         [this](QtAbstractSocket::SocketState state) {
                             m_lines += QStringLiteral("state %1").arg(state);
                         });
        QObject::connect(&socket, &QtLocalSocket::connectedStateChanged, &m_context,
                         [this](bool connected) {
                             m_lines += QStringLiteral("connected %1").arg(int(connected));
                         });
        QObject::connect(&socket, &QtLocalSocket::errorOccurred, &m_context,
                         [this](const AbstractError &error) {
                             m_lines += QStringLiteral("error %1").arg(error.code());
                         });
    }
    QString text() const { return m_lines.join(QStringLiteral(", ")); }

private:
    QObject m_context;
    QStringList m_lines;
};

} // namespace

class TestQtLocalSocket : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void convertsStates_data();
    void convertsStates();
    void convertsErrors_data();
    void convertsErrors();
    void ignoresAddressesOfOtherKinds();
    void tellsWhyItCannotConnect();
    void connectsAndLosesTheServer();
    void reconnectsWhileItTellsOfTheEnd();
    void acceptedSocketIsConnectedFromTheStart();
    void outlivesItsLocalSocket();

    void refusesServersOfOtherUsers();
    void refusedAttemptCanBeAborted();
    void refusesARealStranger();

private:
    QtAbstractServerAddress address() const { return QtAbstractServerAddress(m_path); }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
};

void TestQtLocalSocket::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_path = m_dir->filePath(QStringLiteral("server"));
}

void TestQtLocalSocket::convertsStates_data()
{
    QTest::addColumn<int>("local");
    QTest::addColumn<int>("expected");
    QTest::newRow("unconnected") << 0 << 0;
    QTest::newRow("no local state") << 1 << -1;
    QTest::newRow("connecting") << 2 << 2;
    QTest::newRow("connected") << 3 << 3;
    QTest::newRow("bound") << 4 << -1;
    QTest::newRow("listening") << 5 << -1;
    QTest::newRow("closing") << 6 << 6;
    QTest::newRow("beyond the table") << 7 << -1;
}

void TestQtLocalSocket::convertsStates()
{
    QFETCH(const int, local);
    const auto localSocket = QSharedPointer<QLocalSocket>::create();
    QtLocalSocket socket(localSocket);
    QSignalSpy spy(&socket, &QtAbstractSocket::stateChanged);
    Q_EMIT localSocket->stateChanged(static_cast<QLocalSocket::LocalSocketState>(local));
    QCOMPARE(spy.size(), 1);
    QTEST(int(spy.at(0).at(0).value<QtAbstractSocket::SocketState>()), "expected");
}

void TestQtLocalSocket::convertsErrors_data()
{
    QTest::addColumn<int>("local");
    QTest::addColumn<int>("code");
    QTest::newRow("unknown") << -1 << -1;
    QTest::newRow("refused") << 0 << 1;
    QTest::newRow("peer closed") << 1 << 2;
    QTest::newRow("not found") << 2 << 3;
    QTest::newRow("access") << 3 << 4;
    QTest::newRow("resource") << 4 << 5;
    QTest::newRow("timeout") << 5 << 6;
    QTest::newRow("datagram too large") << 6 << 7;
    QTest::newRow("connection") << 7 << 8;
    QTest::newRow("unsupported") << 10 << 9;
    QTest::newRow("operation") << 19 << 10;
    QTest::newRow("not in the table") << 8 << -1;
}

void TestQtLocalSocket::convertsErrors()
{
    QFETCH(const int, local);
    const auto localSocket = QSharedPointer<QLocalSocket>::create();
    QtLocalSocket socket(localSocket);
    QSignalSpy spy(&socket, &QtAbstractSocket::errorOccurred);
    Q_EMIT localSocket->errorOccurred(static_cast<QLocalSocket::LocalSocketError>(local));
    QCOMPARE(spy.size(), 1);
    const auto error = spy.at(0).at(0).value<AbstractError>();
    QTEST(error.code(), "code");
    QCOMPARE(error.category(), std::string("QtLocalSocketError"));
    QVERIFY(error.source().starts_with("../../src/pmxcl/qt/socket/qtlocalsocket,"));
}

void TestQtLocalSocket::ignoresAddressesOfOtherKinds()
{
    QLocalServer server;
    QVERIFY(server.listen(m_path));
    QtLocalSocket socket;
    const Story story(socket);
    socket.connectToServer(QtAbstractServerAddress(qint64(1)), QIODevice::ReadWrite);
    socket.connectToServer({QHostAddress(QHostAddress::LocalHost), 1}, QIODevice::ReadWrite);
    socket.connectToServer({m_path, 1, QString()}, QIODevice::ReadWrite);
    QCOMPARE(story.text(), QString());
    QCOMPARE(socket.state(), QtAbstractSocket::UnconnectedState);
}

void TestQtLocalSocket::tellsWhyItCannotConnect()
{
    QtLocalSocket socket;
    const Story story(socket);
    socket.connectToServer(address(), QIODevice::ReadWrite);
    QCOMPARE(story.text(), QStringLiteral("state 2, error 3, state 0"));
    const AbstractError error = socket.error();
    QCOMPARE(error.code(), 3);
    QCOMPARE(error.source(), std::string("../../src/pmxcl/qt/socket/qtlocalsocket,178"));
    QCOMPARE(error.description(), std::string("QLocalSocket::connectToServer: Invalid name"));
}

void TestQtLocalSocket::connectsAndLosesTheServer()
{
    QLocalServer server;
    QVERIFY(server.listen(m_path));
    QtLocalSocket socket;
    const Story story(socket);
    socket.setRequiredServerUser(::getuid());
    socket.connectToServer(address(), QIODevice::ReadWrite);
    QVERIFY(socket.isConnected());
    QVERIFY(!socket.isConnecting());
    QVERIFY(server.waitForNewConnection(5000));
    const std::unique_ptr<QLocalSocket> peer(server.nextPendingConnection());
    socket.ioDevice()->write("bytes");
    QTRY_COMPARE(peer->bytesAvailable(), 5);
    QCOMPARE(peer->readAll(), QByteArray("bytes"));
    peer->disconnectFromServer();
    QTRY_VERIFY(!socket.isConnected());
    QCOMPARE(story.text(),
             QStringLiteral("state 2, state 3, connected 1, error 2, state 6, state 0, "
                            "connected 0"));
}

void TestQtLocalSocket::reconnectsWhileItTellsOfTheEnd()
{
    QLocalServer server;
    QVERIFY(server.listen(m_path));
    QtLocalSocket socket;
    connect(&socket, &QtLocalSocket::connectedStateChanged, this, [&](bool connected) {
        if (connected)
            socket.ioDevice()->write("bytes");
        else
            socket.connectToServer(address(), QIODevice::ReadWrite);
    });
    socket.connectToServer(address(), QIODevice::ReadWrite);
    for (int connection = 0; connection < 2; ++connection) {
        QTRY_VERIFY(server.hasPendingConnections());
        const std::unique_ptr<QLocalSocket> peer(server.nextPendingConnection());
        QTRY_COMPARE(peer->bytesAvailable(), 5);
    }
}

void TestQtLocalSocket::acceptedSocketIsConnectedFromTheStart()
{
    QLocalServer server;
    QVERIFY(server.listen(m_path));
    QLocalSocket client;
    client.connectToServer(m_path);
    QVERIFY(server.waitForNewConnection(5000));
    QtLocalSocket socket(
        QSharedPointer<QLocalSocket>(server.nextPendingConnection(), &QObject::deleteLater));
    QVERIFY(socket.isConnected());
    QCOMPARE(socket.state(), QtAbstractSocket::ConnectedState);
    const Story story(socket);
    socket.disconnectFromHost();
    QTRY_COMPARE(story.text(), QStringLiteral("state 6, state 0, connected 0"));
}

void TestQtLocalSocket::outlivesItsLocalSocket()
{
    auto server = std::make_unique<QLocalServer>();
    QVERIFY(server->listen(m_path));
    QLocalSocket client;
    client.connectToServer(m_path);
    QVERIFY(server->waitForNewConnection(5000));
    QtLocalSocket socket(
        QSharedPointer<QLocalSocket>(server->nextPendingConnection(), &QObject::deleteLater));
    QVERIFY(socket.ioDevice());
    server.reset();
    QCOMPARE(socket.ioDevice(), nullptr);
    const Story story(socket);
    socket.connectToServer(address(), QIODevice::ReadWrite);
    socket.disconnectFromHost();
    socket.abort();
    QCOMPARE(socket.state(), QtAbstractSocket::UnconnectedState);
    QCOMPARE(socket.error(), AbstractError());
    QCOMPARE(story.text(), QString());
}

void TestQtLocalSocket::refusesServersOfOtherUsers()
{
    const LogCapture log;
    QLocalServer server;
    QVERIFY(server.listen(m_path));
    QtLocalSocket socket;
    const Story story(socket);
    QSignalSpy readyRead(socket.ioDevice(), &QIODevice::readyRead);
    socket.setRequiredServerUser(::getuid() + 1);
    for (int attempt = 1; attempt <= 2; ++attempt) {
        socket.connectToServer(address(), QIODevice::ReadWrite);
        QVERIFY(socket.isConnecting());
        QVERIFY(!socket.isConnected());
        // What the server says is not listened to, and another attempt is not begun.
        QVERIFY(server.waitForNewConnection(5000));
        const std::unique_ptr<QLocalSocket> peer(server.nextPendingConnection());
        peer->write("hello");
        peer->flush();
        socket.connectToServer(address(), QIODevice::ReadWrite);
        QSignalSpy closed(peer.get(), &QLocalSocket::disconnected);
        QTRY_COMPARE(closed.size(), 1);
        QCOMPARE(socket.state(), QtAbstractSocket::UnconnectedState);
    }
    QCOMPARE(readyRead.size(), 0);
    QCOMPARE(story.text(), QStringLiteral("state 2, error 4, state 0, state 2, error 4, state 0"));

    const QString reason =
        QStringLiteral("the server \"%1\" runs as user %2, not as user %3")
            .arg(m_path, QString::number(::getuid()), QString::number(::getuid() + 1));
    QCOMPARE(socket.error().code(), 4);
    QCOMPARE(QString::fromStdString(socket.error().description()), reason);
    QCOMPARE(
        log.texts(),
        QStringList(QStringLiteral("[QtLocalSocket]: WARNING: refused to connect: ") + reason));

    socket.setRequiredServerUser(::getuid());
    socket.connectToServer(address(), QIODevice::ReadWrite);
    QVERIFY(socket.isConnected());
}

void TestQtLocalSocket::refusedAttemptCanBeAborted()
{
    QLocalServer server;
    QVERIFY(server.listen(m_path));
    auto *const local = new QLocalSocket;
    QtLocalSocket socket(QSharedPointer<QLocalSocket>(local, &QObject::deleteLater));
    const Story story(socket);
    socket.setRequiredServerUser(::getuid() + 1);
    socket.connectToServer(address(), QIODevice::ReadWrite);
    socket.abort();
    QCOMPARE(story.text(), QStringLiteral("state 2, error 4, state 0"));
    QCoreApplication::processEvents();
    QCOMPARE(story.text(), QStringLiteral("state 2, error 4, state 0"));

    socket.connectToServer(address(), QIODevice::ReadWrite);
    delete local;
    QCoreApplication::processEvents();
    QCOMPARE(socket.state(), QtAbstractSocket::UnconnectedState);
}

void TestQtLocalSocket::refusesARealStranger()
{
    if (::getuid() != 0)
        QSKIP("only root can run a server as another user");
    const ServerProcess server({.path = m_path.toUtf8(), .greeting = "hello", .user = 65534});
    QVERIFY(server.isListening());
    QtLocalSocket socket;
    const Story story(socket);
    socket.setRequiredServerUser(::getuid());
    socket.connectToServer(address(), QIODevice::ReadWrite);
    QTRY_COMPARE(story.text(), QStringLiteral("state 2, error 4, state 0"));
    QVERIFY(QString::fromStdString(socket.error().description())
                .contains(QStringLiteral("runs as user 65534, not as user 0")));
}

QTEST_GUILESS_MAIN(TestQtLocalSocket)
#include "tst_qtlocalsocket.moc"
