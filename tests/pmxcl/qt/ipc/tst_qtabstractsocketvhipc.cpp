// The framing of the link, over a local socket whose other end is raw bytes.

#include "logcapture.h"
#include "processmemory.h"
#include "qtabstractsocketvhipc.h"
#include "qtencodedvariantlist.h"
#include "qtlocalsocket.h"
#include "recordingpart.h"
#include "vectors.h"

#include <QLocalServer>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <sys/socket.h>

#include <memory>

using VhMap = QHash<QString, QVariant>;

namespace {

QByteArray hex(const char *text) { return QByteArray::fromHex(text); }
QByteArray handshake() { return hex("1234FAACDDEE0197 00000000"); }
QByteArray cborOpening() { return hex("9F 1B1234FAACDDEE0197 00"); }

/// {"b": true}
VhMap flagMap() { return {{u"b"_qs, true}}; }
QByteArray flagFrame() { return hex("00000010 00000001 00000002 0062 00000001 00 01"); }
QByteArray flagString() { return hex("44A16162F5"); }

} // namespace

class TestQtAbstractSocketVhIpc : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_qs));
        m_part = QSharedPointer<RecordingPart>::create();
        m_socket = QSharedPointer<QtLocalSocket>::create();
        QVERIFY(m_server.isListening() || m_server.listen(m_dir.filePath(u"server"_qs)));
        connectPeer();
    }

    void sends()
    {
        // Here and below, version 2 means version 1 with CBOR, and 3 means version 0 with CBOR.
        const std::pair<int, QByteArray> cases[] = {
            {0, flagFrame()},
            {1, handshake() + flagFrame()},
            {2, cborOpening() + hex("41A0 40") + flagString()},
            {3, {}}};
        for (const auto &[version, expected] : cases) {
            init();
            m_socket->abort();
            const auto link = makeLink(version);
            link->send(flagMap()); // not connected
            connectPeer();
            link->send({});
            link->sendKeepAliveMessage();
            Q_EMIT m_part->sendVh(flagMap());
            hear(expected);
            QCOMPARE(m_part->maySendEncoded(), version < 2);
            m_socket->abort();
            link->send(flagMap()); // no longer connected
        }
        // What stands in several pieces is not left to the event loop's next turn.
        QtEncodedVariantList list;
        list.append(hex("00000001 00 01"));
        init();
        makeLink(0)->send({{u"b"_qs, QVariant::fromValue(list)}});
        QCOMPARE(m_socket->ioDevice()->bytesToWrite(), 0);
        hear(hex("00000019 00000001 00000002 0062 00000009 00 00000001 00000001 00 01"));
    }

    /// Columns: name, protocol version, bytes in hexadecimal, the number of received flagMap() and
    /// of empty maps, and the error for a protocol violation, which ends the connection.
    void receives_data() { ADD_VECTORS("link.json", "received"); }
    void receives()
    {
        const VectorRow row;
        const QByteArray bytes = QByteArray::fromHex(row.bytes(2));
        const QString error = row.text(5);
        const QList<VhMap> maps =
            QList<VhMap>(row.at(4).toInt()) + QList<VhMap>(row.at(3).toInt(), flagMap());
        // At once, byte by byte, and with the last byte on its own.
        for (const qsizetype pieceSize : {bytes.size(), qsizetype(1), bytes.size() - 1}) {
            init();
            const LogCapture log;
            const auto link = makeLink(row.at(1).toInt());
            QString found;
            connect(link.get(), &QtAbstractSocketVhIpc::fatalError, this,
                    [this, &found](const AbstractError &e) {
                        QCOMPARE(e.category(), std::string("GenericError"));
                        found += QString::number(e.code()) + u' '
                            + QString::fromStdString(e.source())
                                  .remove(u"../../src/pmxcl/qt/ipc/qtabstractsocket"_qs);
                        if (found.contains(u"basicipc"))
                            Q_EMIT m_socket->ioDevice()->readyRead(); // nothing more is read
                    });
            for (qsizetype at = 0; at < bytes.size(); at += pieceSize) {
                say(bytes.sliced(at, qMin(pieceSize, bytes.size() - at)));
                QCoreApplication::processEvents();
            }
            QTRY_COMPARE(m_part->maps(), maps);
            QTRY_COMPARE(m_socket->isConnected(), error.isEmpty());
            QTRY_COMPARE(m_peer->state() == QLocalSocket::ConnectedState, error.isEmpty());
            QVERIFY2(error.isEmpty() ? found.isEmpty() : found.startsWith(error),
                     qPrintable(found));
            QVERIFY(error.isEmpty() || log.texts().size() == 1);
        }
    }

    void reservesNothingAheadOfTheBytes()
    {
        const std::pair<int, QByteArray> cases[] = {{0, hex("7FFFFFFF")},
                                                    {2, cborOpening() + hex("5A7FFFFFFF")},
                                                    {2, cborOpening() + hex("5F 5A7FFFFFFF")}};
        for (const auto &[version, bytes] : cases) {
            init();
            const auto link = makeLink(version);
            QSignalSpy readyRead(m_socket->ioDevice(), &QIODevice::readyRead);
            const qint64 before = reservedMemory();
            for (const QByteArray &piece : {bytes, QByteArray("body"), QByteArray("more")}) {
                readyRead.clear();
                say(piece);
                QTRY_VERIFY(!readyRead.isEmpty());
            }
            QVERIFY(reservedMemory() - before < 256'000'000);
            QVERIFY(m_socket->isConnected());
        }
    }

    void beginsAnewAfterReconnect()
    {
        const std::tuple<int, QByteArray, QByteArray> cases[] = {{1, handshake(), flagFrame()},
                                                                 {2, cborOpening(), flagString()}};
        for (const auto &[version, opening, message] : cases) {
            init();
            const auto link = makeLink(version);
            const QSignalSpy errors(link.get(), &QtAbstractSocketVhIpc::fatalError);
            for (int connection = 1; connection <= 3; ++connection) {
                hear(opening);
                // The incomplete message at the end is dropped with its connection.
                say(opening + message + message.chopped(1));
                QTRY_COMPARE(m_part->maps().size(), connection);
                m_peer->disconnectFromServer();
                QTRY_VERIFY(!m_socket->isConnected());
                connectPeer();
            }
            QCOMPARE(m_part->connects(), (QList{true, false, true, false, true, false, true}));
            say(message.repeated(3));
            QTRY_COMPARE(errors.size(), 1);
            QCOMPARE(m_part->maps().size(), 3);
        }
    }

    void halfClosedByThePeer()
    {
        for (const int direction : {SHUT_WR, SHUT_RD}) {
            init();
            const auto link = makeLink(0);
            ::shutdown(static_cast<int>(m_peer->socketDescriptor()), direction);
            if (direction == SHUT_RD)
                link->send({{u"name"_qs, QString(1'000'000, u'x')}});
            QTRY_VERIFY(!m_socket->isConnected());
        }
    }

    void peerThatNeverReads()
    {
        const auto link = makeLink(0);
        m_peer->setReadBufferSize(1);
        connect(m_socket->ioDevice(), &QIODevice::bytesWritten, this,
                [](qint64 bytes) { QVERIFY(bytes > 0); });
        for (int i = 0; i < 20; ++i)
            link->send({{u"name"_qs, QString(500'000, u'x')}});
        // The kernel's buffer fills up; only the rest is buffered in the process.
        QTRY_VERIFY(m_socket->ioDevice()->bytesToWrite() < 20'000'000);
        QVERIFY(m_socket->ioDevice()->bytesToWrite() > 10'000'000);
        m_peer.reset();
        QTRY_VERIFY(!m_socket->isConnected());
        QCOMPARE(m_socket->ioDevice()->bytesToWrite(), 0);
        // The next peer receives nothing of the previous one's data.
        connectPeer();
        link->send(flagMap());
        hear(flagFrame());
    }

    void readsWhatCameBeforeIt()
    {
        for (const bool peerLeaves : {false, true}) {
            init();
            say(flagFrame());
            if (peerLeaves)
                m_peer->disconnectFromServer();
            QTRY_COMPARE(m_socket->ioDevice()->bytesAvailable(), flagFrame().size());
            QTRY_COMPARE(m_socket->isConnected(), !peerLeaves);
            const auto link = makeLink(0);
            QTRY_COMPARE(m_part->maps(), QList<VhMap>{flagMap()});
        }
    }

    void maybeDestroyedByReceiver()
    {
        const std::pair<int, QByteArray> cases[] = {
            {1, handshake() + hex("00000000") + flagFrame()},
            {2, cborOpening() + hex("40") + flagString()}};
        for (const auto &[version, bytes] : cases) {
            init();
            auto link = makeLink(version);
            connect(link.get(), &QtAbstractSocketVhIpc::gotKeepAliveMessage, this,
                    [&link] { link.reset(); });
            say(bytes);
            QTRY_VERIFY(!link);
            QVERIFY(m_socket->isConnected());
            QCOMPARE(m_part->maps().size(), 0);
        }
    }

private:
    void connectPeer()
    {
        m_socket->connectToServer(QtAbstractServerAddress(m_server.fullServerName()),
                                  QIODevice::ReadWrite);
        QVERIFY(m_server.waitForNewConnection(10000));
        m_peer.reset(m_server.nextPendingConnection(), &QObject::deleteLater);
        QVERIFY(m_socket->isConnected());
    }
    std::unique_ptr<QtAbstractSocketVhIpc> makeLink(int version)
    {
        return std::make_unique<QtAbstractSocketVhIpc>(m_socket, m_part, version % 3 > 0 ? 1 : 0,
                                                       version > 1);
    }
    /// Sends bytes, which are in the kernel as one piece when this returns.
    void say(const QByteArray &bytes) const
    {
        m_peer->write(bytes);
        m_peer->flush();
    }
    void hear(const QByteArray &bytes) const
    {
        QTRY_COMPARE(m_peer->bytesAvailable(), bytes.size());
        QCOMPARE(m_peer->readAll().toHex(), bytes.toHex());
    }

    QTemporaryDir m_dir;
    QLocalServer m_server;
    QSharedPointer<QtLocalSocket> m_socket;
    QSharedPointer<QLocalSocket> m_peer;
    QSharedPointer<RecordingPart> m_part;
};

QTEST_GUILESS_MAIN(TestQtAbstractSocketVhIpc)
#include "tst_qtabstractsocketvhipc.moc"
