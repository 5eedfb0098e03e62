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
VhMap flagMap() { return {{u"b"_qs, true}}; }
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

    void sends()
    {
        // Version 2 stands for 1 with CBOR, here and below.
        const std::pair<int, QByteArray> cases[] = {
            {0, flagFrame()},
            {1, handshake() + flagFrame()},
            {2, cborOpening() + hex("41A0 40") + flagString()}};
        for (const auto &[version, expected] : cases) {
            init();
            m_socket->abort();
            const auto link = makeLink(version);
            link->send(flagMap()); // to nobody
            connectPeer();
            link->send({});
            link->sendKeepAliveMessage();
            Q_EMIT m_part->sendVh(flagMap());
            hear(expected);
        }
    }

    void receives_data()
    {
        // The error is that of a broken peer, whose connection ends; empty if there is none.
        const Rows<int, QByteArray, QList<VhMap>, QString> row("version", "bytes", "maps", "error");
        const auto good = [&row](const char *name, int version, const QByteArray &bytes,
                                 const QList<VhMap> &maps) { row(name, version, bytes, maps, {}); };
        good("frame", 0, flagFrame(), {flagMap()});
        good("frames, two empty", 0, hex("00000000") + flagFrame() + hex("00000000") + flagFrame(),
             {flagMap(), flagMap()});
        good("frame that cannot be decoded", 0, hex("00000002 FFFF") + flagFrame(),
             {{}, flagMap()});
        good("empty map spelled out", 0, hex("00000004 00000000"), {{}});
        good("frame after a handshake", 1, handshake() + flagFrame(), {flagMap()});
        good("handshake of another version", 1, hex("1234FAACDDEE0197 00000007") + flagFrame(),
             {flagMap()});
        good("CBOR strings, one empty", 2, cborOpening() + flagString() + hex("40") + flagString(),
             {flagMap(), flagMap()});
        good("CBOR string in chunks", 2,
             cborOpening() + hex("5F 42A161 40 4262F5 FF") + flagString(), {flagMap(), flagMap()});
        good("CBOR array of known length", 2, hex("85 1B1234FAACDDEE0197 20 02") + flagString(),
             {flagMap()});
        good("CBOR, no map", 2, cborOpening() + hex("4101"), {{}});

        const QString cbor = u"1 basicipc,213"_qs;
        const QString magic = u"2 basicipc,232"_qs;
        row("length -1", 0, flagFrame() + hex("FFFFFFFF") + flagFrame(), {flagMap()},
            u"1 basicipc"_qs);
        row("length -2 GiB", 0, hex("80000000") + flagFrame(), {}, u"1 basicipc"_qs);
        row("wrong magic", 1, hex("1234FAACDDEE0198 00000000") + flagFrame(), {}, magic);
        row("frame instead of magic", 1, flagFrame(), {}, magic);
        row("CBOR without array", 2, hex("1B1234FAACDDEE0197 00 41A0"), {}, cbor);
        row("CBOR with wrong magic", 2, hex("9F 1B1234FAACDDEE0198 00 41A0"), {}, cbor);
        row("CBOR with negative magic", 2, hex("9F 3B1234FAACDDEE0197 00 41A0"), {}, cbor);
        row("CBOR without version", 2, hex("9F 1B1234FAACDDEE0197 41A0"), {}, cbor);
        row("CBOR text", 2, cborOpening() + flagString() + hex("6162"), {flagMap()}, cbor);
        row("CBOR array in the array", 2, cborOpening() + hex("80"), {}, cbor);
        row("CBOR chunk of another type", 2, cborOpening() + hex("5F 6161 FF"), {}, cbor);
        row("CBOR array closed", 2, cborOpening() + flagString() + hex("FF"), {flagMap()}, cbor);
        row("no CBOR at all", 2, hex("FCFC"), {}, cbor);
        row("CBOR body cut off", 2, cborOpening() + hex("42A101") + flagString(), {},
            u"1 vhipc,86"_qs);
    }

    void receives()
    {
        QFETCH(const int, version);
        QFETCH(const QByteArray, bytes);
        QFETCH(const QList<VhMap>, maps);
        QFETCH(const QString, error);
        // At once, byte by byte, and with the last byte on its own.
        for (const qsizetype pieceSize : {bytes.size(), qsizetype(1), bytes.size() - 1}) {
            init();
            const LogCapture log;
            const auto link = makeLink(version);
            QString found;
            connect(link.get(), &QtAbstractSocketVhIpc::fatalError, this,
                    [&found](const AbstractError &e) {
                        QCOMPARE(e.category(), std::string("GenericError"));
                        found += QString::number(e.code()) + u' '
                            + QString::fromStdString(e.source())
                                  .remove(u"../../src/pmxcl/qt/ipc/qtabstractsocket"_qs);
                    });
            for (qsizetype at = 0; at < bytes.size(); at += pieceSize) {
                say(bytes.sliced(at, qMin(pieceSize, bytes.size() - at)));
                QCoreApplication::processEvents();
            }
            QTRY_COMPARE(m_part->maps(), maps);
            QTRY_COMPARE(m_socket->isConnected(), error.isEmpty());
            QTRY_COMPARE(m_peer->state() == QLocalSocket::ConnectedState, error.isEmpty());
            QVERIFY2(found.startsWith(error) && found.isEmpty() == error.isEmpty(),
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
