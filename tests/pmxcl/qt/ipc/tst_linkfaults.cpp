// The link over a real socket to servers that fail; only the waits of the keeper are not real.

#include "qtabstractsocketvhipc.h"
#include "qtlocalsocket.h"
#include "qtsocketconnectionkeeper.h"
#include "recordingpart.h"
#include "turnedclock.h"

#include <QLocalServer>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>

namespace {

/// A server in a process of its own: it says the same to every client, shuts that connection down
/// in one direction (SHUT_RD, SHUT_WR) if asked to, and does nothing more until it is killed.
class ServerProcess {
public:
    ServerProcess(const QByteArray &path, const QByteArray &greeting, int direction = -1)
    {
        ::unlink(path.constData());
        const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.toStdString().copy(address.sun_path, sizeof(address.sun_path) - 1);
        listening = ::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof(address)) == 0
            && ::listen(listener, 5) == 0;
        m_pid = ::fork();
        while (m_pid == 0) {
            const int client = ::accept(listener, nullptr, nullptr);
            if (::write(client, greeting.constData(), static_cast<size_t>(greeting.size())) < 0)
                ::_exit(1);
            ::shutdown(client, direction);
        }
        ::close(listener);
    }
    ~ServerProcess()
    {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    Q_DISABLE_COPY_MOVE(ServerProcess)

    bool listening = false;

private:
    pid_t m_pid = -1;
};

qsizetype openDescriptors()
{
    return QDir(u"/proc/self/fd"_qs).entryList(QDir::AllEntries | QDir::System).size();
}

/// 16 bytes announced, 2 sent.
QByteArray halfAFrame() { return QByteArray::fromHex("00000010 6161"); }

} // namespace

class TestLinkFaults : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        // What Qt opens once for the process is there from now on.
        QLocalSocket().connectToServer(u"/nowhere"_qs);
        QCoreApplication::processEvents();
        m_descriptors = openDescriptors();

        m_clock = std::make_unique<TurnedClock>();
        m_socket = QSharedPointer<QtLocalSocket>::create();
        m_socket->setRequiredServerUser(::getuid());
        m_part = QSharedPointer<RecordingPart>::create();
        m_link = std::make_unique<QtAbstractSocketVhIpc>(m_socket, m_part, 0, false);
        m_keeper = std::make_unique<QtSocketConnectionKeeper>(m_socket, nullptr, *m_clock);
        m_keeper->setServerAddress(QtAbstractServerAddress(QFile::decodeName(m_path)));
    }

    void cleanup()
    {
        m_keeper.reset();
        m_link.reset();
        m_socket.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(openDescriptors(), m_descriptors);
    }

    void serverKilledInTheMiddleOfAFrame200Times()
    {
        m_keeper->enable(true);
        m_clock->advance(0);
        int wait = 300;
        for (int restart = 0; restart < 200; ++restart) {
            // Every other connection lasts long enough to start the waits anew.
            const bool lasts = restart % 2 == 0;
            QCOMPARE(m_clock->nextTimerIn(), wait);
            {
                const ServerProcess server(m_path, halfAFrame());
                QVERIFY(server.listening);
                m_clock->advance(wait);
                QVERIFY(isConnected());
                QTRY_COMPARE(m_socket->ioDevice()->bytesAvailable(), 2);
                m_clock->advance(0);
                m_clock->advance(lasts ? 3000 : 2000);
            }
            QTRY_VERIFY(!isConnected());
            m_clock->advance(0);
            wait = lasts ? 300 : wait * 2;
        }
        QCOMPARE(m_part->maps().size(), 0);
        QCOMPARE(m_part->connects().size(), 400);
    }

    void halfClosed()
    {
        m_keeper->enable(true);
        m_clock->advance(0);
        int wait = 300;
        for (const int direction : {SHUT_WR, SHUT_RD, SHUT_RD, SHUT_WR}) {
            const ServerProcess server(m_path, halfAFrame(), direction);
            QVERIFY(server.listening);
            m_clock->advance(wait);
            QVERIFY(isConnected());
            QTRY_VERIFY(m_socket->ioDevice()->bytesAvailable() == 2 || !isConnected());
            if (direction == SHUT_RD)
                m_link->send({{u"name"_qs, QString(1'000'000, u'x')}});
            QTRY_VERIFY(!isConnected());
            m_clock->advance(0);
            wait = qMin(wait * 2, 3000);
            QCOMPARE(m_clock->nextTimerIn(), wait);
        }
        QCOMPARE(m_part->maps().size(), 0);
    }

    void neverReading()
    {
        {
            const ServerProcess server(m_path, {});
            QVERIFY(server.listening);
            m_keeper->enable(true);
            for (int i = 0; i < 20; ++i)
                m_link->send({{u"name"_qs, QString(500'000, u'x')}});
            // The kernel takes what it has room for, the rest waits here and nothing else does.
            QTRY_VERIFY(m_socket->ioDevice()->bytesToWrite() < 20'000'000);
            QVERIFY(m_socket->ioDevice()->bytesToWrite() > 10'000'000);
        }
        QTRY_VERIFY(!isConnected());
        QCOMPARE(m_socket->ioDevice()->bytesToWrite(), 0);

        // The next server hears nothing of what was meant for the last one.
        QLocalServer::removeServer(QFile::decodeName(m_path));
        QLocalServer server;
        QVERIFY(server.listen(QFile::decodeName(m_path)));
        m_clock->advance(0);
        m_clock->advance(300);
        QVERIFY(isConnected());
        m_link->send({{u"b"_qs, true}});
        QVERIFY(server.waitForNewConnection(10'000));
        const std::unique_ptr<QLocalSocket> peer(server.nextPendingConnection());
        const QByteArray expected =
            QByteArray::fromHex("00000010 00000001 00000002 0062 00000001 00 01");
        QTRY_COMPARE(peer->bytesAvailable(), expected.size());
        QCOMPARE(peer->readAll().toHex(), expected.toHex());
    }

private:
    bool isConnected() const { return m_socket->isConnected(); }

    qsizetype m_descriptors = 0;
    QTemporaryDir m_dir;
    const QByteArray m_path = QFile::encodeName(m_dir.filePath(u"server"_qs));
    std::unique_ptr<TurnedClock> m_clock;
    QSharedPointer<QtLocalSocket> m_socket;
    QSharedPointer<RecordingPart> m_part;
    std::unique_ptr<QtAbstractSocketVhIpc> m_link;
    std::unique_ptr<QtSocketConnectionKeeper> m_keeper;
};

QTEST_GUILESS_MAIN(TestLinkFaults)
#include "tst_linkfaults.moc"
