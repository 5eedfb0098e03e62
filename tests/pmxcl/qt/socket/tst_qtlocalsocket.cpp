#include "logcapture.h"
#include "qtlocalsocket.h"

#include <QLocalServer>
#include <QSignalSpy>
#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <memory>

namespace {

/// The signals of a QtLocalSocket, in order.
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
            QCOMPARE(errors.takeLast().at(0).value<AbstractError>().code(), it.value());
        }
    }

    void tellsWhyItCannotConnect()
    {
        const auto name = [this](const char *last) { return m_dir.filePath(QLatin1String(last)); };
        QVERIFY(QDir(m_dir.path()).mkdir(u"folder"_qs));
        QVERIFY(QFile(name("file")).open(QIODevice::WriteOnly));
        {
            QLocalServer crashed;
            QVERIFY(crashed.listen(name("crashed")) && QFile::link(name("crashed"), name("kept")));
            QVERIFY(::rename(QFile::encodeName(name("crashed")), QFile::encodeName(name("left")))
                    == 0);
        }
        const QString tooLong =
            m_dir.filePath({}).leftJustified(sizeof(sockaddr_un::sun_path), u'x');
        const uid_t user = ::getuid();
        // No listener, and other reasons.
        const std::tuple<QString, uid_t, QString> cases[] = {
            {name("no"), user, {}},
            {name("left"), user, {}},
            {name("left"), user + 1, u"it belongs to user %1"_qs.arg(user)},
            {name("folder"), user, u"a folder is in its place"_qs},
            {name("file"), user, u"another file is in its place"_qs},
            {tooLong, user, u"the path is longer than that of a socket may be"_qs}};
        for (const auto &[path, requiredUser, reason] : cases) {
            const LogCapture log;
            QtLocalSocket socket;
            socket.setRequiredServerUser(requiredUser);
            for (int attempt = 0; attempt < 2; ++attempt)
                connectTo(socket, path);
            QCOMPARE(socket.state(), QtAbstractSocket::UnconnectedState);
            const QString line = u"[QtLocalSocket]: WARNING: cannot connect to \"%1\": %2"_qs;
            QCOMPARE(log.texts(),
                     reason.isEmpty() ? QStringList() : QStringList(line.arg(path, reason)));
        }
        QtLocalSocket socket;
        const Story story(socket);
        connectTo(socket, name("no"));
        socket.connectToServer(QtAbstractServerAddress(1), QIODevice::ReadWrite);
        QCOMPARE(story.text(), u"state 2, error 3, state 0"_qs);
        QCOMPARE(socket.error(),
                 AbstractError(3, "QtLocalSocketError",
                               "../../src/pmxcl/qt/socket/qtlocalsocket,178",
                               "QLocalSocket::connectToServer: Invalid name"));
    }

    void givesUpAServerWhoseQueueIsFull()
    {
        const LogCapture log;
        // A server that does not accept, with a backlog of one.
        m_server.reset();
        const int server = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(m_path).constData(), sizeof(address.sun_path));
        QCOMPARE(::bind(server, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
        QCOMPARE(::listen(server, 0), 0);
        QLocalSocket first;
        first.connectToServer(m_path);
        QCOMPARE(first.state(), QLocalSocket::ConnectedState);
        QtLocalSocket socket;
        const Story story(socket);
        const auto cpuBefore = std::clock();
        connectTo(socket, m_path);
        QVERIFY(socket.isConnecting());
        QTRY_COMPARE(story.text(), u"state 2, error 6, state 0"_qs);
        QVERIFY2(std::clock() - cpuBefore < CLOCKS_PER_SEC / 2, "it does not try without a pause");
        QCOMPARE(log.texts(),
                 QStringList(u"[QtLocalSocket]: WARNING: cannot connect to \"%1\": its queue of "
                             "connections is full"_qs.arg(m_path)));
        QCOMPARE(socket.error().code(), 6);

        // Aborted while it waits; and connected when there is room again.
        connectTo(socket, m_path);
        socket.abort();
        connectTo(socket, m_path);
        const int accepted = ::accept(server, nullptr, nullptr);
        QTRY_VERIFY(socket.isConnected());
        ::close(accepted);
        ::close(server);
        QVERIFY(QFile::remove(m_path));
        QCOMPARE(story.text(),
                 u"state 2, error 6, state 0, state 2, state 0, state 2, state 3, connected 1"_qs);
    }

    void connectsAndLosesTheServer()
    {
        const LogCapture log;
        QtLocalSocket socket;
        const Story story(socket);
        socket.setRequiredServerUser(::getuid());
        connectTo(socket, m_path);
        QVERIFY(socket.isConnected() && !socket.isConnecting() && !socket.isDisconnecting());
        const auto peer = accepted();
        QVERIFY(peer);
        peer->disconnectFromServer();
        QTRY_COMPARE(story.text(),
                     u"state 2, state 3, connected 1, error 2, state 6, state 0, connected 0"_qs);
        QCOMPARE(log.texts().filter(u"WARNING"_qs), QStringList());
    }

    void tellsWhatThePeerHasTaken()
    {
        QtLocalSocket socket;
        connectTo(socket, m_path);
        const auto peer = accepted();
        QVERIFY(peer && socket.hasPeerTakenAll());
        QCOMPARE(socket.writeAtOnce("bytes"), 5);
        QVERIFY(!socket.hasPeerTakenAll());
        QTRY_COMPARE(peer->bytesAvailable(), 5);
        QVERIFY(socket.hasPeerTakenAll());
    }

    /// By the first or by the last signal of the end.
    void reconnectsWhileItTellsOfTheEnd()
    {
        for (const bool first : {false, true}) {
            QtLocalSocket socket;
            const Story story(socket);
            connect(&socket, &QtLocalSocket::stateChanged, this, [&](int state) {
                if (first && state == QtAbstractSocket::UnconnectedState)
                    connectTo(socket, m_path);
            });
            connect(&socket, &QtLocalSocket::connectedStateChanged, this, [&](bool connected) {
                if (connected)
                    socket.ioDevice()->write("bytes");
                else if (!first)
                    connectTo(socket, m_path);
            });
            connectTo(socket, m_path);
            for (int connection = 0; connection < 2; ++connection) {
                QTRY_VERIFY(m_server->hasPendingConnections());
                const auto peer = accepted();
                QTRY_COMPARE(peer->bytesAvailable(), 5);
                peer->disconnectFromServer();
            }
            QVERIFY(story.text().startsWith(
                u"state 2, state 3, connected 1, error 2, state 6, state 0, connected 0, state 2"));
        }
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
            // The server's bytes are ignored, and no further attempt is started.
            const auto peer = accepted();
            peer->write("hello");
            peer->flush();
            connectTo(socket, m_path);
            QCOMPARE(socket.writeAtOnce("nor is it told anything"), 0);
            if (aborted)
                socket.abort();
            QCOMPARE(socket.isConnecting(), !aborted);
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

        // The local socket is destroyed meanwhile; then no function has an effect.
        socket.setRequiredServerUser(::getuid() + 1);
        connectTo(socket, m_path);
        delete local;
        QCoreApplication::processEvents();
        connectTo(socket, m_path);
        socket.abort();
        QCOMPARE(socket.state(), QtAbstractSocket::UnconnectedState);
        QCOMPARE(socket.ioDevice(), nullptr);
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
