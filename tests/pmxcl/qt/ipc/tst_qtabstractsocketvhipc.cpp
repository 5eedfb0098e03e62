#include "localsocketpair.h"
#include "logcapture.h"
#include "qtabstractsocketvhipc.h"
#include "recordingpart.h"

#include <QSignalSpy>
#include <QTest>

using VhMap = QHash<QString, QVariant>;

namespace {

QByteArray cborOpening() { return QByteArray::fromHex("9F 1B1234FAACDDEE0197 00"); }

VhMap message(const QString &name) { return {{QStringLiteral("name"), name}}; }

} // namespace

class TestQtAbstractSocketVhIpc : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void sendsGoldenBytes_data();
    void sendsGoldenBytes();
    void receives_data();
    void receives();
    void undecodableCborEndsTheConnection();
    void passesErrorsOn();
    void tellsProcessorOfConnections();
    void bothEndsTalk_data();
    void bothEndsTalk();

private:
    QSharedPointer<RecordingPart> m_part;
};

void TestQtAbstractSocketVhIpc::init() { m_part = QSharedPointer<RecordingPart>::create(); }

void TestQtAbstractSocketVhIpc::sendsGoldenBytes_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("useCbor");
    QTest::addColumn<QByteArray>("expected");
    // An empty map, a keep-alive and {"name": "x"}.
    QTest::newRow("data stream") << 0 << false
                                 << QByteArray::fromHex(
                                        "0000001B 00000001 00000008 006E0061006D0065 0000000A 00 "
                                        "00000002 0078");
    QTest::newRow("CBOR") << 1 << true
                          << cborOpening() + QByteArray::fromHex("41A0 40 48A1646E616D656178");
}

void TestQtAbstractSocketVhIpc::sendsGoldenBytes()
{
    QFETCH(const int, version);
    QFETCH(const bool, useCbor);
    QFETCH(const QByteArray, expected);
    const LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    QtAbstractSocketVhIpc ipc(pair.socket(), m_part, version, useCbor);
    ipc.send({});
    ipc.sendKeepAliveMessage();
    Q_EMIT m_part->sendVh(message(QStringLiteral("x")));
    QTRY_COMPARE(pair.peer().bytesAvailable(), expected.size());
    QCOMPARE(pair.peer().readAll().toHex(), expected.toHex());
}

void TestQtAbstractSocketVhIpc::receives_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("useCbor");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<VhMap>>("maps");
    QTest::addColumn<int>("keepAlives");
    const auto row = [](const char *name, bool useCbor, const QByteArray &bytes,
                        const QList<VhMap> &maps, int keepAlives) {
        QTest::newRow(name) << int(useCbor) << useCbor << bytes << maps << keepAlives;
    };
    const auto hex = [](const char *text) { return QByteArray::fromHex(text); };
    const VhMap x = message(QStringLiteral("x"));
    row("data stream: keep-alive, message", false,
        hex("00000000 0000001B 00000001 00000008 006E0061006D0065 0000000A 00 00000002 0078"), {x},
        1);
    row("data stream: no body that can be decoded", false, hex("00000002 FFFF"), {VhMap()}, 0);
    row("data stream: empty map spelled out", false, hex("00000004 00000000"), {VhMap()}, 0);
    row("CBOR: keep-alive, message, keep-alive", true,
        cborOpening() + hex("40 48A1646E616D656178 40"), {x}, 2);
    row("CBOR: no map", true, cborOpening() + hex("4101"), {VhMap()}, 0);
}

void TestQtAbstractSocketVhIpc::receives()
{
    QFETCH(const int, version);
    QFETCH(const bool, useCbor);
    QFETCH(const QByteArray, bytes);
    QFETCH(const QList<VhMap>, maps);
    QFETCH(const int, keepAlives);
    LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    const QtAbstractSocketVhIpc ipc(pair.socket(), m_part, version, useCbor);
    QSignalSpy keepAliveSpy(&ipc, &QtAbstractSocketVhIpc::gotKeepAliveMessage);
    QSignalSpy errorSpy(&ipc, &QtAbstractSocketVhIpc::fatalError);
    pair.say(bytes);
    QTRY_COMPARE(m_part->maps(), maps);
    QTRY_COMPARE(keepAliveSpy.size(), keepAlives);
    QCOMPARE(errorSpy.size(), 0);
    QVERIFY(pair.isConnected());
}

void TestQtAbstractSocketVhIpc::undecodableCborEndsTheConnection()
{
    LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    const QtAbstractSocketVhIpc ipc(pair.socket(), m_part, 1, true);
    QSignalSpy errorSpy(&ipc, &QtAbstractSocketVhIpc::fatalError);
    pair.say(cborOpening() + QByteArray::fromHex("42A101 48A1646E616D656178"));
    QTRY_VERIFY(!pair.socket()->isConnected());
    QCOMPARE(errorSpy.size(), 1);
    const auto error = errorSpy.at(0).at(0).value<AbstractError>();
    QCOMPARE(error.code(), 1);
    QCOMPARE(error.category(), std::string("GenericError"));
    QCOMPARE(error.source(), std::string("../../src/pmxcl/qt/ipc/qtabstractsocketvhipc,86"));
    QCOMPARE(m_part->maps().size(), 0);
}

void TestQtAbstractSocketVhIpc::passesErrorsOn()
{
    LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    const QtAbstractSocketVhIpc ipc(pair.socket(), m_part, 0, false);
    QSignalSpy errorSpy(&ipc, &QtAbstractSocketVhIpc::fatalError);
    pair.say(QByteArray::fromHex("FFFFFFFE"));
    QTRY_COMPARE(errorSpy.size(), 1);
    QVERIFY(!pair.socket()->isConnected());
}

void TestQtAbstractSocketVhIpc::tellsProcessorOfConnections()
{
    LocalSocketPair pair(false);
    const QtAbstractSocketVhIpc early(pair.socket(), m_part, 0, false);
    QCOMPARE(m_part->connects(), QList<bool>());
    pair.connect();
    QCOMPARE(m_part->connects(), QList<bool>{true});
    const auto lateComer = QSharedPointer<RecordingPart>::create();
    const QtAbstractSocketVhIpc late(pair.socket(), lateComer, 0, false);
    QCOMPARE(lateComer->connects(), QList<bool>{true});
    pair.peer().abort();
    QTRY_COMPARE(m_part->connects(), (QList<bool>{true, false}));
    QCOMPARE(lateComer->connects(), (QList<bool>{true, false}));
}

void TestQtAbstractSocketVhIpc::bothEndsTalk_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("useCbor");
    QTest::newRow("data stream") << 0 << false;
    QTest::newRow("data stream with handshake") << 1 << false;
    QTest::newRow("CBOR") << 1 << true;
}

void TestQtAbstractSocketVhIpc::bothEndsTalk()
{
    QFETCH(const int, version);
    QFETCH(const bool, useCbor);
    const LocalSocketPair pair;
    QVERIFY(pair.isConnected());
    QtAbstractSocketVhIpc client(pair.socket(), m_part, version, useCbor);
    const auto serverPart = QSharedPointer<RecordingPart>::create();
    const auto accepted = QSharedPointer<QtLocalSocket>::create(
        QSharedPointer<QLocalSocket>(&pair.peer(), [](QLocalSocket *) {}));
    QtAbstractSocketVhIpc server(accepted, serverPart, version, useCbor);
    // More than what the kernel buffers for a socket.
    const VhMap big = message(QString(1'000'000, u'x'));
    for (int i = 0; i < 3; ++i) {
        client.send(big);
        server.send(big);
        server.send(message(QString::number(i)));
    }
    QTRY_COMPARE(serverPart->maps().size(), 3);
    QTRY_COMPARE(m_part->maps().size(), 6);
    QCOMPARE(serverPart->maps().constLast(), big);
    QCOMPARE(m_part->maps().at(4), big);
    QCOMPARE(m_part->maps().at(5), message(QStringLiteral("2")));
}

QTEST_GUILESS_MAIN(TestQtAbstractSocketVhIpc)
#include "tst_qtabstractsocketvhipc.moc"
