#include "logcapture.h"
#include "qtlocalsocket.h"

#include <QLocalServer>
#include <QSignalSpy>
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
                         [this](int state) { m_lines += u"state %1"_qs.arg(state); });
        QObject::connect(&socket, &QtLocalSocket::connectedStateChanged, &m_context,
                         [this](bool on) { m_lines += u"connected %1"_qs.arg(int(on)); });
        QObject::connect(
            &socket, &QtLocalSocket::errorOccurred, &m_context,
            [this](const AbstractError &error) { m_lines += u"error %1"_qs.arg(error.code()); });
    }
    QString text() const { return m_lines.join(u", "_qs); }

private:
    QObject m_context;
    QStringList m_lines;
};

} // namespace

class TestQtLocalSocket : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_server = std::make_unique<QLocalServer>();
        QVERIFY(m_server->listen(m_path));
    }
    void cleanup() { m_server.reset(); }

    void convertsStatesAndErrors()
    {
        const auto local = QSharedPointer<QLocalSocket>::create();
        QtLocalSocket socket(local);
        QSignalSpy states(&socket, &QtAbstractSocket::stateChanged);
        QSignalSpy errors(&socket, &QtAbstractSocket::errorOccurred);
        const QList<int> ownStates{0, -1, 2, 3, -1, -1, 6, -1};
        for (int state = 0; state < ownStates.size(); ++state) {
            Q_EMIT local->stateChanged(static_cast<QLocalSocket::LocalSocketState>(state));
            QCOMPARE(int(states.takeLast().at(0).value<QtAbstractSocket::SocketState>()),
                     ownStates.at(state));
        }
        const QMap<int, int> ownCodes{{-1, -1}, {0, 1}, {1, 2}, {2, 3},  {3, 4},  {4, 5},
                                      {5, 6},   {6, 7}, {7, 8}, {8, -1}, {10, 9}, {19, 10}};
        for (auto it = ownCodes.cbegin(); it != ownCodes.cend(); ++it) {
            Q_EMIT local->errorOccurred(static_cast<QLocalSocket::LocalSocketError>(it.key()));
            const auto error = errors.takeLast().at(0).value<AbstractError>();
            QCOMPARE(error.code(), it.value());
            QCOMPARE(error.category(), std::string("QtLocalSocketError"));
            QVERIFY(error.source().starts_with("../../src/pmxcl/qt/socket/qtlocalsocket,"));
        }
    }

    void tellsWhyItCannotConnect()
    {
        QtLocalSocket socket;
        const Story story(socket);
        connectTo(socket, m_dir.filePath(u"no"_qs));
        QCOMPARE(story.text(), u"state 2, error 3, state 0"_qs);
        QCOMPARE(socket.error(),
                 AbstractError(3, "QtLocalSocketError",
                               "../../src/pmxcl/qt/socket/qtlocalsocket,178",
                               "QLocalSocket::connectToServer: Invalid name"));
    }

    void connectsAndLosesTheServer()
    {
        QtLocalSocket socket;
        const Story story(socket);
        socket.setRequiredServerUser(::getuid());
        connectTo(socket, m_path);
        QVERIFY(socket.isConnected() && !socket.isConnecting());
        const auto peer = accepted();
        QVERIFY(peer);
        peer->disconnectFromServer();
        QTRY_COMPARE(story.text(),
                     u"state 2, state 3, connected 1, error 2, state 6, state 0, connected 0"_qs);
    }

    void reconnectsWhileItTellsOfTheEnd()
    {
        QtLocalSocket socket;
        connect(&socket, &QtLocalSocket::connectedStateChanged, this, [&](bool connected) {
            if (connected)
                socket.ioDevice()->write("bytes");
            else
                connectTo(socket, m_path);
        });
        connectTo(socket, m_path);
        for (int connection = 0; connection < 2; ++connection) {
            QTRY_VERIFY(m_server->hasPendingConnections());
            const auto peer = accepted();
            QTRY_COMPARE(peer->bytesAvailable(), 5);
            peer->disconnectFromServer();
        }
    }

    void outlivesItsLocalSocket()
    {
        QLocalSocket client;
        client.connectToServer(m_path);
        QtLocalSocket socket(accepted());
        QVERIFY(socket.isConnected() && socket.ioDevice());
        m_server.reset(); // and its sockets
        QCOMPARE(socket.ioDevice(), nullptr);
        const Story story(socket);
        connectTo(socket, m_path);
        socket.disconnectFromHost();
        socket.abort();
        QCOMPARE(socket.state(), QtAbstractSocket::UnconnectedState);
        QCOMPARE(socket.error(), AbstractError());
        QCOMPARE(story.text(), QString());
    }

    void refusesServersOfOtherUsers()
    {
        const LogCapture log;
        auto *const local = new QLocalSocket;
        QtLocalSocket socket(QSharedPointer<QLocalSocket>(local, &QObject::deleteLater));
        const Story story(socket);
        QSignalSpy readyRead(socket.ioDevice(), &QIODevice::readyRead);
        socket.setRequiredServerUser(::getuid() + 1);
        for (const bool aborted : {false, false, true}) {
            connectTo(socket, m_path);
            QVERIFY(socket.isConnecting() && !socket.isConnected());
            // What the server says is not listened to, and another attempt is not begun.
            const auto peer = accepted();
            peer->write("hello");
            peer->flush();
            connectTo(socket, m_path);
            if (aborted)
                socket.abort();
            QTRY_COMPARE(peer->state(), QLocalSocket::UnconnectedState);
            QCOMPARE(socket.state(), QtAbstractSocket::UnconnectedState);
        }
        QCOMPARE(readyRead.size(), 0);
        const QStringList refusal{u"state 2"_qs, u"error 4"_qs, u"state 0"_qs};
        QCOMPARE(story.text(), (refusal + refusal + refusal).join(u", "_qs));

        const QString reason = u"the server \"%1\" runs as user %2, not as user %3"_qs.arg(m_path)
                                   .arg(::getuid())
                                   .arg(::getuid() + 1);
        QCOMPARE(QString::fromStdString(socket.error().description()), reason);
        QCOMPARE(log.texts(),
                 QStringList(u"[QtLocalSocket]: WARNING: refused to connect: "_qs + reason));
        socket.setRequiredServerUser(::getuid());
        connectTo(socket, m_path);
        QVERIFY(socket.isConnected());
        socket.abort();

        // The end of the local socket in the middle of it.
        socket.setRequiredServerUser(::getuid() + 1);
        connectTo(socket, m_path);
        delete local;
        QCoreApplication::processEvents();
        QCOMPARE(socket.state(), QtAbstractSocket::UnconnectedState);
    }

private:
    QSharedPointer<QLocalSocket> accepted() const
    {
        return m_server->hasPendingConnections() || m_server->waitForNewConnection(5000)
            ? QSharedPointer<QLocalSocket>(m_server->nextPendingConnection(), &QObject::deleteLater)
            : nullptr;
    }
    static void connectTo(QtLocalSocket &socket, const QString &path)
    {
        socket.connectToServer(QtAbstractServerAddress(path), QIODevice::ReadWrite);
    }

    QTemporaryDir m_dir;
    const QString m_path = m_dir.filePath(u"server"_qs);
    std::unique_ptr<QLocalServer> m_server;
};

QTEST_GUILESS_MAIN(TestQtLocalSocket)
#include "tst_qtlocalsocket.moc"
