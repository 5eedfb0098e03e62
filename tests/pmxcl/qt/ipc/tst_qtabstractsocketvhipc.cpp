// The framing of the link and what is made of it, at one end of a local socket whose other end says
// and hears bytes.

#include "logcapture.h"
#include "processmemory.h"
#include "qtabstractsocketvhipc.h"
#include "qtlocalsocket.h"
#include "recordingpart.h"
#include "rows.h"

#include <QLocalServer>
#include <QSignalSpy>

#include <memory>

using VhMap = QHash<QString, QVariant>;

namespace {

QByteArray hex(const char *text) { return QByteArray::fromHex(text); }
QByteArray handshake() { return hex("1234FAACDDEE0197 00000000"); }
QByteArray cborOpening() { return hex("9F 1B1234FAACDDEE0197 00"); }

/// {"b": true}
const VhMap flag{{u"b"_qs, true}};
QByteArray flagFrame() { return hex("00000010 00000001 00000002 0062 00000001 00 01"); }
QByteArray flagString() { return hex("44A16162F5"); }

} // namespace

class TestQtAbstractSocketVhIpc : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_part = QSharedPointer<RecordingPart>::create();
        m_socket = QSharedPointer<QtLocalSocket>::create();
        QVERIFY(m_server.isListening() || m_server.listen(m_dir.filePath(u"server"_qs)));
        connectPeer();
    }

    void sends_data()
    {
        // Version 2 stands for 1 with CBOR, here and below.
        const Rows<int, QByteArray> row("version", "expected");
        row("data stream", 0, flagFrame());
        row("data stream with handshake", 1, handshake() + flagFrame());
        row("CBOR", 2, cborOpening() + hex("41A0 40") + flagString());
    }

    void sends()
    {
        QFETCH(const int, version);
        QFETCH(const QByteArray, expected);
        m_socket->abort();
        const auto link = makeLink(version);
        link->send(flag); // to nobody
        connectPeer();
        link->send({});
        link->sendKeepAliveMessage();
        Q_EMIT m_part->sendVh(flag);
        hear(expected);
    }

    void receives_data()
    {
        const Rows<int, QByteArray, QList<VhMap>, int> row("version", "bytes", "maps",
                                                           "keepAlives");
        row("frame", 0, flagFrame(), {flag}, 0);
        row("frames, two empty", 0, hex("00000000") + flagFrame() + hex("00000000") + flagFrame(),
            {flag, flag}, 2);
        row("frame that cannot be decoded", 0, hex("00000002 FFFF") + flagFrame(), {{}, flag}, 0);
        row("empty map spelled out", 0, hex("00000004 00000000"), {{}}, 0);
        row("frame after a handshake", 1, handshake() + flagFrame(), {flag}, 0);
        row("handshake of another version", 1, hex("1234FAACDDEE0197 00000007") + flagFrame(),
            {flag}, 0);
        row("CBOR strings, one empty", 2, cborOpening() + flagString() + hex("40") + flagString(),
            {flag, flag}, 1);
        row("CBOR string in chunks", 2,
            cborOpening() + hex("5F 42A161 40 4262F5 FF") + flagString(), {flag, flag}, 0);
        row("CBOR array of known length", 2, hex("85 1B1234FAACDDEE0197 20 02") + flagString(),
            {flag}, 0);
        row("CBOR, no map", 2, cborOpening() + hex("4101"), {{}}, 0);
    }

    void receives()
    {
        QFETCH(const int, version);
        QFETCH(const QByteArray, bytes);
        QFETCH(const QList<VhMap>, maps);
        // At once, byte by byte, and with the last byte on its own.
        for (const qsizetype pieceSize : {bytes.size(), qsizetype(1), bytes.size() - 1}) {
            init();
            const auto link = makeLink(version);
            const QSignalSpy keepAlives(link.get(), &QtAbstractSocketVhIpc::gotKeepAliveMessage);
            for (qsizetype at = 0; at < bytes.size(); at += pieceSize) {
                QVERIFY(m_part->maps() != maps);
                say(bytes.sliced(at, qMin(pieceSize, bytes.size() - at)));
                QCoreApplication::processEvents();
            }
            QTRY_COMPARE(m_part->maps(), maps);
            QTEST(int(keepAlives.size()), "keepAlives");
            QVERIFY(m_socket->isConnected());
        }
    }

    void endsConnectionOfBrokenPeer_data()
    {
        const Rows<int, QByteArray, int, int, std::string> row("version", "bytes", "maps", "code",
                                                               "source");
        const std::string cbor = "basicipc,213";
        const std::string magic = "basicipc,232";
        row("length -1", 0, flagFrame() + hex("FFFFFFFF") + flagFrame(), 1, 1, "basicipc,");
        row("length -2 GiB", 0, hex("80000000") + flagFrame(), 0, 1, "basicipc,");
        row("wrong magic", 1, hex("1234FAACDDEE0198 00000000") + flagFrame(), 0, 2, magic);
        row("frame instead of magic", 1, flagFrame(), 0, 2, magic);
        row("CBOR without array", 2, hex("1B1234FAACDDEE0197 00 41A0"), 0, 1, cbor);
        row("CBOR with wrong magic", 2, hex("9F 1B1234FAACDDEE0198 00 41A0"), 0, 1, cbor);
        row("CBOR with negative magic", 2, hex("9F 3B1234FAACDDEE0197 00 41A0"), 0, 1, cbor);
        row("CBOR without version", 2, hex("9F 1B1234FAACDDEE0197 41A0"), 0, 1, cbor);
        row("CBOR text", 2, cborOpening() + flagString() + hex("6162"), 1, 1, cbor);
        row("CBOR array in the array", 2, cborOpening() + hex("80"), 0, 1, cbor);
        row("CBOR chunk of another type", 2, cborOpening() + hex("5F 6161 FF"), 0, 1, cbor);
        row("CBOR array closed", 2, cborOpening() + flagString() + hex("FF"), 1, 1, cbor);
        row("no CBOR at all", 2, hex("FC"), 0, 1, cbor);
        row("CBOR body cut off", 2, cborOpening() + hex("42A101") + flagString(), 0, 1, "vhipc,86");
    }

    void endsConnectionOfBrokenPeer()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const int, version);
        QFETCH(const std::string, source);
        const LogCapture log;
        const auto link = makeLink(version);
        const QSignalSpy errors(link.get(), &QtAbstractSocketVhIpc::fatalError);
        say(bytes);
        QTRY_VERIFY(!m_socket->isConnected());
        QTRY_COMPARE(m_peer->state(), QLocalSocket::UnconnectedState);
        QCOMPARE(errors.size(), 1);
        const auto error = errors.at(0).at(0).value<AbstractError>();
        QTEST(error.code(), "code");
        QCOMPARE(error.category(), std::string("GenericError"));
        QVERIFY(error.source().starts_with("../../src/pmxcl/qt/ipc/qtabstractsocket" + source));
        QTEST(int(m_part->maps().size()), "maps");
        QCOMPARE(log.texts().size(), 1);
    }

    void reservesNothingAheadOfTheBytes_data()
    {
        const Rows<int, QByteArray> row("version", "bytes");
        row("frame", 0, hex("7FFFFFFF"));
        row("CBOR string", 2, cborOpening() + hex("5A7FFFFFFF"));
        row("CBOR chunk", 2, cborOpening() + hex("5F 5A7FFFFFFF"));
    }

    void reservesNothingAheadOfTheBytes()
    {
        QFETCH(const int, version);
        QFETCH(const QByteArray, bytes);
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

    void beginsAnewAfterReconnect_data()
    {
        const Rows<int, QByteArray, QByteArray> row("version", "opening", "message");
        row("data stream", 1, handshake(), flagFrame());
        row("CBOR", 2, cborOpening(), flagString());
    }

    void beginsAnewAfterReconnect()
    {
        QFETCH(const int, version);
        QFETCH(const QByteArray, opening);
        QFETCH(const QByteArray, message);
        const auto link = makeLink(version);
        const QSignalSpy errors(link.get(), &QtAbstractSocketVhIpc::fatalError);
        for (int connection = 1; connection <= 3; ++connection) {
            hear(opening);
            // The unfinished message at the end is forgotten with its connection.
            say(opening + message + message.chopped(1));
            QTRY_COMPARE(m_part->maps().size(), connection);
            m_peer->disconnectFromServer();
            QTRY_VERIFY(!m_socket->isConnected());
            connectPeer();
        }
        QCOMPARE(m_part->connects(), (QList<bool>{true, false, true, false, true, false, true}));
        say(message.repeated(3));
        QTRY_COMPARE(errors.size(), 1);
        QCOMPARE(m_part->maps().size(), 3);
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
            QTRY_COMPARE(m_part->maps(), QList<VhMap>{flag});
        }
    }

    void maybeDestroyedByReceiver_data()
    {
        const Rows<int, QByteArray> row("version", "bytes");
        row("data stream", 1, handshake() + hex("00000000") + flagFrame());
        row("CBOR", 2, cborOpening() + hex("40") + flagString());
    }

    void maybeDestroyedByReceiver()
    {
        QFETCH(const int, version);
        QFETCH(const QByteArray, bytes);
        auto link = makeLink(version);
        connect(link.get(), &QtAbstractSocketVhIpc::gotKeepAliveMessage, this,
                [&link] { link.reset(); });
        say(bytes);
        QTRY_VERIFY(!link);
        QVERIFY(m_socket->isConnected());
        QCOMPARE(m_part->maps().size(), 0);
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
        return std::make_unique<QtAbstractSocketVhIpc>(m_socket, m_part, qMin(version, 1),
                                                       version > 1);
    }
    /// Bytes that are on their way as one piece when this returns.
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
