#include "logcapture.h"
#include "qttoggleswitchobject.h"
#include "qtvhipccompositepart.h"
#include "recordingpart.h"

#include <QSignalSpy>
#include <QTest>

using VhMap = QHash<QString, QVariant>;
using Gate = QSharedPointer<QtToggleSwitchObject>;

namespace {

QString partName() { return QStringLiteral("part"); }
QString otherName() { return QStringLiteral("other"); }

VhMap messageFor(const QString &name)
{
    return {{QStringLiteral("name"), name}, {QStringLiteral("reason"), QStringLiteral("test")}};
}

} // namespace

class TestQtVhIpcCompositePart : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void routesByName_data();
    void routesByName();
    void firstPartOfANameStays();
    void gatesStopMessages_data();
    void gatesStopMessages();
    void connectionIsToldWhenGateOpens();
    void readyWhenAllPartsAre();
    void requiresServerWhenAnyPartDoes();

private:
    QSharedPointer<RecordingPart> m_part;
    QSharedPointer<RecordingPart> m_other;
};

void TestQtVhIpcCompositePart::init()
{
    m_part = QSharedPointer<RecordingPart>::create();
    m_other = QSharedPointer<RecordingPart>::create();
}

void TestQtVhIpcCompositePart::routesByName_data()
{
    QTest::addColumn<VhMap>("map");
    QTest::addColumn<int>("forPart");
    QTest::newRow("its name") << messageFor(partName()) << 1;
    QTest::newRow("another's name") << messageFor(otherName()) << 0;
    QTest::newRow("nobody's name") << messageFor(QStringLiteral("nobody")) << 0;
    QTest::newRow("no name") << VhMap{{QStringLiteral("reason"), partName()}} << 0;
    QTest::newRow("empty") << VhMap() << 0;
}

void TestQtVhIpcCompositePart::routesByName()
{
    QFETCH(const VhMap, map);
    QFETCH(const int, forPart);
    QtVhIpcCompositePart composite({}, {});
    composite.addPart(partName(), m_part, true, true);
    QSignalSpy sent(&composite, &QtAbstractVhIpcPart::sendVh);
    composite.processVh(map);
    Q_EMIT m_part->sendVh(map);
    QCOMPARE(m_part->maps(), QList<VhMap>(forPart, map));
    QCOMPARE(sent.size(), forPart);
    if (forPart > 0)
        QCOMPARE(sent.at(0).at(0).value<VhMap>(), map);
}

void TestQtVhIpcCompositePart::firstPartOfANameStays()
{
    QtVhIpcCompositePart composite({}, {});
    composite.addPart(partName(), m_part, false, false);
    m_other->setRequiringServer(true);
    composite.addPart(partName(), m_other, false, false);
    QSignalSpy sent(&composite, &QtAbstractVhIpcPart::sendVh);
    composite.processVh(messageFor(partName()));
    composite.onConnectChanged(true);
    Q_EMIT m_other->sendVh(messageFor(partName()));
    QCOMPARE(composite.part(partName()), m_part);
    QCOMPARE(composite.part(otherName()), nullptr);
    QCOMPARE(m_part->maps().size(), 1);
    QCOMPARE(m_other->maps().size(), 0);
    QCOMPARE(m_other->connects().size(), 0);
    QCOMPARE(sent.size(), 0);
    QVERIFY(!composite.isRequiringServer());
}

void TestQtVhIpcCompositePart::gatesStopMessages_data()
{
    QTest::addColumn<bool>("needsFirst");
    QTest::addColumn<bool>("needsSecond");
    QTest::addColumn<bool>("firstOn");
    QTest::addColumn<bool>("secondOn");
    QTest::addColumn<bool>("passes");
    QTest::newRow("needs none") << false << false << false << false << true;
    QTest::newRow("needs the first, off") << true << false << false << true << false;
    QTest::newRow("needs the first, on") << true << false << true << false << true;
    QTest::newRow("needs the second, off") << false << true << true << false << false;
    QTest::newRow("needs the second, on") << false << true << false << true << true;
    QTest::newRow("needs both, one off") << true << true << true << false << false;
    QTest::newRow("needs both, on") << true << true << true << true << true;
}

void TestQtVhIpcCompositePart::gatesStopMessages()
{
    QFETCH(const bool, needsFirst);
    QFETCH(const bool, needsSecond);
    QFETCH(const bool, firstOn);
    QFETCH(const bool, secondOn);
    QFETCH(const bool, passes);
    QtVhIpcCompositePart composite(Gate::create(firstOn), Gate::create(secondOn));
    composite.addPart(partName(), m_part, needsFirst, needsSecond);
    QSignalSpy sent(&composite, &QtAbstractVhIpcPart::sendVh);
    composite.processVh(messageFor(partName()));
    Q_EMIT m_part->sendVh(messageFor(partName()));
    composite.onConnectChanged(true);
    QCOMPARE(m_part->maps().size(), int(passes));
    QCOMPARE(sent.size(), int(passes));
    QCOMPARE(m_part->connects().size(), int(passes));
}

void TestQtVhIpcCompositePart::connectionIsToldWhenGateOpens()
{
    const auto gate = Gate::create(false);
    QtVhIpcCompositePart composite(gate, {});
    composite.addPart(partName(), m_part, true, false);
    composite.addPart(otherName(), m_other, false, true);
    gate->setOn(true);
    gate->setOn(false);
    composite.onConnectChanged(true);
    QCOMPARE(m_part->connects(), QList<bool>());
    QCOMPARE(m_other->connects(), QList<bool>{true});
    gate->setOn(true);
    gate->setOn(false);
    gate->setOn(true);
    QCOMPARE(m_part->connects(), QList<bool>{true});
    gate->setOn(false);
    composite.onConnectChanged(false);
    QCOMPARE(m_part->connects(), (QList<bool>{true, false}));
    composite.onConnectChanged(true);
    QCOMPARE(m_part->connects(), (QList<bool>{true, false}));
    QCOMPARE(m_other->connects(), (QList<bool>{true, false, true}));
}

void TestQtVhIpcCompositePart::readyWhenAllPartsAre()
{
    const LogCapture log;
    QtVhIpcCompositePart composite({}, {});
    QSignalSpy changed(&composite, &QtAbstractVhIpcPart::readyStateChanged);
    QVERIFY(composite.isReady());
    m_part->setReady(false);
    composite.addPart(partName(), m_part, false, false);
    QVERIFY(!composite.isReady());
    composite.addPart(otherName(), m_other, false, false);
    m_other->setReady(false);
    m_part->setReady(true);
    QVERIFY(!composite.isReady());
    m_other->setReady(true);
    QVERIFY(composite.isReady());
    QCOMPARE(changed.size(), 2);

    const QString prefix = QStringLiteral("[QtVhIpcCompositePart #0x%1]: ")
                               .arg(reinterpret_cast<quintptr>(&composite), 0, 16);
    QCOMPARE(
        log.texts(),
        (QStringList{
            prefix + QStringLiteral("<part> ready: 0"), prefix + QStringLiteral("ready: 0"),
            prefix + QStringLiteral("<other> ready: 0"), prefix + QStringLiteral("<part> ready: 1"),
            prefix + QStringLiteral("<other> ready: 1"), prefix + QStringLiteral("ready: 1")}));
}

void TestQtVhIpcCompositePart::requiresServerWhenAnyPartDoes()
{
    QtVhIpcCompositePart composite({}, {});
    m_part->setRequiringServer(true);
    composite.addPart(partName(), m_part, false, false);
    composite.addPart(otherName(), m_other, false, false);
    QVERIFY(composite.isRequiringServer());
    QSignalSpy changed(&composite, &QtAbstractVhIpcPart::requiringServerChanged);
    m_other->setRequiringServer(true);
    m_part->setRequiringServer(false);
    QVERIFY(composite.isRequiringServer());
    QCOMPARE(changed.size(), 0);
    m_other->setRequiringServer(false);
    QVERIFY(!composite.isRequiringServer());
    QCOMPARE(changed.size(), 1);
}

QTEST_GUILESS_MAIN(TestQtVhIpcCompositePart)
#include "tst_qtvhipccompositepart.moc"
