#include "qttoggleswitchobject.h"
#include "qtvhipccompositepart.h"
#include "recordingpart.h"
#include "rows.h"

#include <QSignalSpy>

using VhMap = QHash<QString, QVariant>;
using Gate = QSharedPointer<QtToggleSwitchObject>;

namespace {

const VhMap forPart{{u"name"_qs, u"part"_qs}};
const VhMap forOther{{u"name"_qs, u"other"_qs}};

} // namespace

class TestQtVhIpcCompositePart : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void routesByName()
    {
        const Part part = Part::create();
        const Part secondOfTheName = Part::create();
        QtVhIpcCompositePart composite({}, {});
        composite.addPart(u"part"_qs, part, true, true);
        composite.addPart(u"part"_qs, secondOfTheName, false, false);
        const QSignalSpy sent(&composite, &QtAbstractVhIpcPart::sendVh);
        const VhMap nameless{{u"reason"_qs, u"part"_qs}};
        for (const VhMap &map : {forOther, nameless, VhMap(), forPart}) {
            composite.processVh(map);
            Q_EMIT part->sendVh(map);
            Q_EMIT secondOfTheName->sendVh(map);
        }
        QCOMPARE(part->maps(), QList<VhMap>{forPart});
        QCOMPARE(secondOfTheName->maps(), QList<VhMap>());
        QCOMPARE(sent, (QList<QVariantList>{{QVariant::fromValue(forPart)}}));
    }

    void gatesStopMessages_data()
    {
        // Which gates the part needs, which are on; bit 0 is the first gate.
        const Rows<int, int, bool> row("needed", "on", "passes");
        row("needs none", 0, 0, true);
        row("needs the first, off", 1, 2, false);
        row("needs the first, on", 1, 1, true);
        row("needs the second, off", 2, 1, false);
        row("needs the second, on", 2, 2, true);
        row("needs both, one off", 3, 1, false);
        row("needs both, on", 3, 3, true);
    }

    void gatesStopMessages()
    {
        QFETCH(const int, needed);
        QFETCH(const int, on);
        QFETCH(const bool, passes);
        const Part part = Part::create();
        QtVhIpcCompositePart composite(Gate::create((on & 1) != 0), Gate::create((on & 2) != 0));
        composite.addPart(u"part"_qs, part, (needed & 1) != 0, (needed & 2) != 0);
        const QSignalSpy sent(&composite, &QtAbstractVhIpcPart::sendVh);
        composite.processVh(forPart);
        Q_EMIT part->sendVh(forPart);
        composite.onConnectChanged(true);
        QCOMPARE(part->maps().size(), int(passes));
        QCOMPARE(sent.size(), int(passes));
        QCOMPARE(part->connects().size(), int(passes));
    }

    void connectionIsToldWhenGateOpens()
    {
        const Gate gate = Gate::create(false);
        const Part part = Part::create();
        QtVhIpcCompositePart composite(gate, {});
        composite.addPart(u"part"_qs, part, true, false);
        gate->setOn(true);
        gate->setOn(false);
        composite.onConnectChanged(true);
        QCOMPARE(part->connects(), QList<bool>());
        for (const bool on : {true, false, true, false})
            gate->setOn(on);
        QCOMPARE(part->connects(), QList<bool>{true});
        composite.onConnectChanged(false);
        composite.onConnectChanged(true);
        QCOMPARE(part->connects(), (QList<bool>{true, false}));
    }

    /// Ready when all are, requiring the server when any does.
    void isWhatItsPartsAre()
    {
        const Part part = Part::create();
        const Part other = Part::create();
        QtVhIpcCompositePart composite({}, {});
        const QSignalSpy ready(&composite, &QtAbstractVhIpcPart::readyStateChanged);
        const QSignalSpy requiring(&composite, &QtAbstractVhIpcPart::requiringServerChanged);
        part->setReady(false);
        part->setRequiringServer(true);
        composite.addPart(u"part"_qs, part, false, false);
        composite.addPart(u"other"_qs, other, false, false);
        QVERIFY(!composite.isReady() && composite.isRequiringServer());
        other->setReady(false);
        other->setRequiringServer(true);
        part->setReady(true);
        part->setRequiringServer(false);
        QVERIFY(!composite.isReady() && composite.isRequiringServer());
        other->setReady(true);
        other->setRequiringServer(false);
        QVERIFY(composite.isReady() && !composite.isRequiringServer());
        QCOMPARE(ready, (QList<QVariantList>{{false}, {true}}));
        QCOMPARE(requiring, (QList<QVariantList>{{true}, {false}}));
    }

private:
    using Part = QSharedPointer<RecordingPart>;
};

QTEST_GUILESS_MAIN(TestQtVhIpcCompositePart)
#include "tst_qtvhipccompositepart.moc"
