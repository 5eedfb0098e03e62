#include "localsocketpair.h"
#include "logcapture.h"
#include "processmemory.h"
#include "qtabstractsocketbasicipc.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

QByteArray handshake() { return QByteArray::fromHex("1234FAACDDEE0197 00000000"); }
QByteArray cborOpening() { return QByteArray::fromHex("9F 1B1234FAACDDEE0197 00"); }
QString basicIpcSource()
{
    return QStringLiteral("../../src/pmxcl/qt/ipc/qtabstractsocketbasicipc,");
}

/// The errors and messages of a basic layer, as one text: "<length or bytes>" and "error <code>".
class Inbox {
public:
    explicit Inbox(const QtAbstractSocketBasicIpc &ipc)
        : m_received(&ipc, &QtAbstractSocketBasicIpc::received),
          m_errors(&ipc, &QtAbstractSocketBasicIpc::fatalError)
    {
    }
    QByteArrayList messages() const
    {
        QByteArrayList messages;
        for (const QVariantList &arguments : m_received)
            messages += arguments.at(0).toByteArray();
        return messages;
    }
    int errorCount() const { return int(m_errors.size()); }
    AbstractError error() const { return m_errors.at(0).at(0).value<AbstractError>(); }

private:
    QSignalSpy m_received;
    QSignalSpy m_errors;
};

} // namespace

class TestQtAbstractSocketBasicIpc : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void writesGoldenBytes_data();
    void writesGoldenBytes();
    void readsMessages_data();
    void readsMessages();
    void endsConnectionOfBrokenPeer_data();
    void endsConnectionOfBrokenPeer();
    void reservesNothingAheadOfTheBytes_data();
    void reservesNothingAheadOfTheBytes();
    void shakesHandsAgainAfterReconnect_data();
    void shakesHandsAgainAfterReconnect();
    void readsWhatCameBeforeIt_data();
    void readsWhatCameBeforeIt();
    void maybeDestroyedByReceiver_data();
    void maybeDestroyedByReceiver();
    void sendsNothingUnconnected();
    void cborWithoutHandshakeIsMute();
};

void TestQtAbstractSocketBasicIpc::writesGoldenBytes_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("useCbor");
    QTest::addColumn<QByteArrayList>("messages");
    QTest::addColumn<QByteArray>("expected");
    const QByteArrayList messages = {"", "abc", QByteArray(258, 'x')};
    QTest::newRow("data stream, no handshake")
        << 0 << false << messages
        << QByteArray::fromHex("00000003 616263 00000102") + QByteArray(258, 'x');
    QTest::newRow("data stream, handshake")
        << 1 << false << QByteArrayList{"abc"}
        << QByteArray::fromHex("1234FAACDDEE0197 00000000 00000003 616263");
    QTest::newRow("CBOR") << 1 << true << messages
                          << QByteArray::fromHex("9F 1B1234FAACDDEE0197 00 40 43616263 590102")
            + QByteArray(258, 'x');
}

void TestQtAbstractSocketBasicIpc::writesGoldenBytes()
{
    QFETCH(const int, version);
    QFETCH(const bool, useCbor);
    QFETCH(const QByteArrayList, messages);
    QFETCH(const QByteArray, expected);
    const LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    QtAbstractSocketBasicIpc ipc(pair.socket(), version, useCbor);
    for (const QByteArray &message : messages)
        ipc.send(message);
    QTRY_COMPARE(pair.peer().bytesAvailable(), expected.size());
    QCOMPARE(pair.peer().readAll().toHex(), expected.toHex());
}

void TestQtAbstractSocketBasicIpc::readsMessages_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("useCbor");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArrayList>("expected");
    const auto row = [](const char *name, int version, bool useCbor, const QByteArray &bytes,
                        const QByteArrayList &expected) {
        QTest::newRow(name) << version << useCbor << bytes << expected;
    };
    const auto hex = [](const char *text) { return QByteArray::fromHex(text); };
    const QByteArray big(70'000, 'b');
    row("frame", 0, false, hex("00000003 616263"), {"abc"});
    row("empty frame", 0, false, hex("00000000"), {""});
    row("frames, one empty", 0, false, hex("00000002 6161 00000000 00000001 62"), {"aa", "", "b"});
    row("big frame", 0, false, hex("00011170") + big, {big});
    row("frame after a handshake", 1, false, handshake() + hex("00000001 61"), {"a"});
    row("handshake of another version", 1, false, hex("1234FAACDDEE0197 00000007 00000001 61"),
        {"a"});
    row("CBOR strings, one empty", 1, true, cborOpening() + hex("4161 40 426262"), {"a", "", "bb"});
    row("CBOR string in chunks", 1, true, cborOpening() + hex("5F 4161 40 426262 FF 4163"),
        {"abb", "c"});
    row("big CBOR string", 1, true, cborOpening() + hex("5A00011170") + big, {big});
    row("CBOR array of known length", 1, true, hex("85 1B1234FAACDDEE0197 20 02 4161"), {"a"});
}

void TestQtAbstractSocketBasicIpc::readsMessages()
{
    QFETCH(const int, version);
    QFETCH(const bool, useCbor);
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArrayList, expected);

    // At once, byte by byte, and with the last byte on its own.
    for (const qsizetype pieceSize : {bytes.size(), qsizetype(1), bytes.size() - 1}) {
        if (bytes.size() / pieceSize > 1000)
            continue;
        LocalSocketPair pair;
        QVERIFY(pair.isConnected());
        const QtAbstractSocketBasicIpc ipc(pair.socket(), version, useCbor);
        const Inbox inbox(ipc);
        for (qsizetype at = 0; at < bytes.size(); at += pieceSize) {
            QVERIFY(inbox.messages() != expected);
            pair.say(bytes.sliced(at, qMin(pieceSize, bytes.size() - at)));
            QCoreApplication::processEvents();
        }
        QTRY_COMPARE(inbox.messages(), expected);
        QCOMPARE(inbox.errorCount(), 0);
        QVERIFY(pair.isConnected());
    }
}

void TestQtAbstractSocketBasicIpc::endsConnectionOfBrokenPeer_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("useCbor");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArrayList>("received");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("line");
    const auto row = [](const char *name, int version, bool useCbor, const QByteArray &bytes,
                        const QByteArrayList &received, int code, const char *line) {
        QTest::newRow(name) << version << useCbor << bytes << received << code
                            << QString::fromLatin1(line);
    };
    const auto hex = [](const char *text) { return QByteArray::fromHex(text); };
    row("length -1", 0, false, hex("00000001 61 FFFFFFFF 00000001 62"), {"a"}, 1, "");
    row("length -2 GiB", 0, false, hex("80000000 00000001 62"), {}, 1, "");
    row("wrong magic", 1, false, hex("1234FAACDDEE0198 00000000 00000001 61"), {}, 2, "232");
    row("frame instead of magic", 1, false, hex("00000008 6161616161616161"), {}, 2, "232");
    row("CBOR without array", 1, true, hex("1B1234FAACDDEE0197 00 4161"), {}, 1, "213");
    row("CBOR with wrong magic", 1, true, hex("9F 1B1234FAACDDEE0198 00 4161"), {}, 1, "213");
    row("CBOR with negative magic", 1, true, hex("9F 3B1234FAACDDEE0197 00 4161"), {}, 1, "213");
    row("CBOR without version", 1, true, hex("9F 1B1234FAACDDEE0197 4161"), {}, 1, "213");
    row("CBOR text", 1, true, cborOpening() + hex("4161 6162"), {"a"}, 1, "213");
    row("CBOR array in the array", 1, true, cborOpening() + hex("80"), {}, 1, "213");
    row("CBOR chunk of another type", 1, true, cborOpening() + hex("5F 6161 FF"), {}, 1, "213");
    row("CBOR array closed", 1, true, cborOpening() + hex("4161 FF"), {"a"}, 1, "213");
    row("no CBOR at all", 1, true, hex("FC"), {}, 1, "213");
}

void TestQtAbstractSocketBasicIpc::endsConnectionOfBrokenPeer()
{
    QFETCH(const int, version);
    QFETCH(const bool, useCbor);
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArrayList, received);
    QFETCH(const int, code);
    QFETCH(const QString, line);

    const LogCapture log;
    LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    const QtAbstractSocketBasicIpc ipc(pair.socket(), version, useCbor);
    const Inbox inbox(ipc);
    pair.say(bytes);
    QTRY_VERIFY(!pair.socket()->isConnected());
    QCOMPARE(inbox.errorCount(), 1);
    QCOMPARE(inbox.error().code(), code);
    QCOMPARE(inbox.error().category(), std::string("GenericError"));
    QVERIFY(QString::fromStdString(inbox.error().source()).startsWith(basicIpcSource() + line));
    QCOMPARE(inbox.messages(), received);
    QCOMPARE(log.texts().size(), 1);
    QVERIFY(log.texts().constFirst().startsWith(
        QStringLiteral("[QtAbstractSocketBasicIpc]: WARNING: broken peer. {ERROR: |CODE|: ")));
    QTRY_COMPARE(pair.peer().state(), QLocalSocket::UnconnectedState);
}

void TestQtAbstractSocketBasicIpc::reservesNothingAheadOfTheBytes_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("useCbor");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("frame") << 0 << false << QByteArray::fromHex("7FFFFFFF");
    QTest::newRow("CBOR string") << 1 << true << cborOpening() + QByteArray::fromHex("5A7FFFFFFF");
    QTest::newRow("CBOR chunk") << 1 << true
                                << cborOpening() + QByteArray::fromHex("5F 5A7FFFFFFF");
}

void TestQtAbstractSocketBasicIpc::reservesNothingAheadOfTheBytes()
{
    QFETCH(const int, version);
    QFETCH(const bool, useCbor);
    QFETCH(const QByteArray, bytes);
    LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    const QtAbstractSocketBasicIpc ipc(pair.socket(), version, useCbor);
    QSignalSpy readyRead(pair.socket()->ioDevice(), &QIODevice::readyRead);
    const qint64 before = reservedMemory();
    for (const QByteArray &piece : {bytes, QByteArray("body"), QByteArray("more")}) {
        readyRead.clear();
        pair.say(piece);
        QTRY_VERIFY(!readyRead.isEmpty());
    }
    QVERIFY(reservedMemory() - before < 256'000'000);
    QVERIFY(pair.isConnected());
}

void TestQtAbstractSocketBasicIpc::shakesHandsAgainAfterReconnect_data()
{
    QTest::addColumn<bool>("useCbor");
    QTest::addColumn<QByteArray>("opening");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("data stream") << false << handshake() << QByteArray::fromHex("00000001 61");
    QTest::newRow("CBOR") << true << cborOpening() << QByteArray::fromHex("4161");
}

void TestQtAbstractSocketBasicIpc::shakesHandsAgainAfterReconnect()
{
    QFETCH(const bool, useCbor);
    QFETCH(const QByteArray, opening);
    QFETCH(const QByteArray, message);
    LocalSocketPair pair;
    const QtAbstractSocketBasicIpc ipc(pair.socket(), 1, useCbor);
    const Inbox inbox(ipc);
    for (int connection = 1; connection <= 3; ++connection) {
        QVERIFY(pair.isConnected());
        QTRY_COMPARE(pair.peer().bytesAvailable(), opening.size());
        QCOMPARE(pair.peer().readAll().toHex(), opening.toHex());
        // The unfinished message at the end is forgotten with its connection.
        pair.say(opening + message + message.chopped(1));
        QTRY_COMPARE(inbox.messages().size(), connection);
        pair.peer().disconnectFromServer();
        QTRY_VERIFY(!pair.socket()->isConnected());
        pair.connect();
    }
    pair.say(message.repeated(3));
    QTRY_COMPARE(inbox.errorCount(), 1);
    QCOMPARE(inbox.messages().size(), 3);
}

void TestQtAbstractSocketBasicIpc::readsWhatCameBeforeIt_data()
{
    QTest::addColumn<bool>("peerLeaves");
    QTest::newRow("and goes on") << false;
    QTest::newRow("although the peer has left") << true;
}

void TestQtAbstractSocketBasicIpc::readsWhatCameBeforeIt()
{
    QFETCH(const bool, peerLeaves);
    LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    pair.say(QByteArray::fromHex("00000001 61"));
    if (peerLeaves)
        pair.peer().disconnectFromServer();
    QTRY_COMPARE(pair.socket()->ioDevice()->bytesAvailable(), 5);
    QTRY_COMPARE(pair.socket()->isConnected(), !peerLeaves);
    const QtAbstractSocketBasicIpc ipc(pair.socket(), 0, false);
    const Inbox inbox(ipc);
    QTRY_COMPARE(inbox.messages(), QByteArrayList{"a"});
}

void TestQtAbstractSocketBasicIpc::maybeDestroyedByReceiver_data()
{
    QTest::addColumn<bool>("useCbor");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("data stream") << false << handshake() + QByteArray::fromHex("00000001 61 0000");
    QTest::newRow("CBOR") << true << cborOpening() + QByteArray::fromHex("4161 4161");
}

void TestQtAbstractSocketBasicIpc::maybeDestroyedByReceiver()
{
    QFETCH(const bool, useCbor);
    QFETCH(const QByteArray, bytes);
    LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    auto ipc = std::make_unique<QtAbstractSocketBasicIpc>(pair.socket(), 1, useCbor);
    connect(ipc.get(), &QtAbstractSocketBasicIpc::received, this, [&ipc] { ipc.reset(); });
    pair.say(bytes);
    QTRY_VERIFY(!ipc);
    QVERIFY(pair.isConnected());
}

void TestQtAbstractSocketBasicIpc::sendsNothingUnconnected()
{
    LocalSocketPair pair(false);
    QtAbstractSocketBasicIpc ipc(pair.socket(), 0, false);
    ipc.send("lost");
    pair.connect();
    QVERIFY(pair.isConnected());
    ipc.send("kept");
    QTRY_COMPARE(pair.peer().bytesAvailable(), 8);
    QCOMPARE(pair.peer().readAll(), QByteArray::fromHex("00000004") + "kept");
}

void TestQtAbstractSocketBasicIpc::cborWithoutHandshakeIsMute()
{
    LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    QtAbstractSocketBasicIpc ipc(pair.socket(), 0, true);
    const Inbox inbox(ipc);
    ipc.send("message");
    QSignalSpy readyRead(pair.socket()->ioDevice(), &QIODevice::readyRead);
    pair.say(QByteArray::fromHex("9F 4161"));
    QTRY_COMPARE(readyRead.size(), 1);
    QCOMPARE(inbox.messages().size() + inbox.errorCount(), 0);
    QCOMPARE(pair.socket()->ioDevice()->bytesToWrite(), 0);
}

QTEST_GUILESS_MAIN(TestQtAbstractSocketBasicIpc)
#include "tst_qtabstractsocketbasicipc.moc"
