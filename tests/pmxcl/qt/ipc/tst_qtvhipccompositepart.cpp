#include "qttoggleswitchobject.h"
#include "qtvhipccompositepart.h"
#include "recordingpart.h"

#include <QSignalSpy>
#include <QTest>

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

    void gatesStopMessages()
    {
        // Which gates the part needs, and which are on; bit 0 is the first gate.
        for (int needed = 0; needed < 4; ++needed) {
            for (int on = 0; on < 4; ++on) {
                const Part part = Part::create();
                QtVhIpcCompositePart composite(Gate::create((on & 1) != 0),
                                               Gate::create((on & 2) != 0));
                composite.addPart(u"part"_qs, part, (needed & 1) != 0, (needed & 2) != 0);
                const QSignalSpy sent(&composite, &QtAbstractVhIpcPart::sendVh);
                composite.processVh(forPart);
                Q_EMIT part->sendVh(forPart);
                composite.onConnectChanged(true);
                const int passes = (needed & on) == needed ? 1 : 0;
                QCOMPARE(part->maps().size(), passes);
                QCOMPARE(sent.size(), passes);
                QCOMPARE(part->connects().size(), passes);
            }
        }
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
