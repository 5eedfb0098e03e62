#include "logcapture.h"
#include "qttoggleswitchobject.h"
#include "qtvhipccompositepart.h"
#include "recordingpart.h"

#include <QSignalSpy>
#include <QTest>

using VhMap = QHash<QString, QVariant>;
using Gate = QSharedPointer<QtToggleSwitchObject>;
using Part = QSharedPointer<RecordingPart>;

class TestQtVhIpcCompositePart : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void messagesPassByNameAndGates()
    {
        const VhMap message{{u"name"_qs, u"part"_qs}};
        const VhMap nameless{{u"reason"_qs, u"part"_qs}};
        // Which gates the part needs, and which are on; bit 0 is the first gate.
        for (int needed = 0; needed < 4; ++needed) {
            for (int on = 0; on < 4; ++on) {
                const Part part = Part::create();
                const Part secondOfTheName = Part::create();
                QtVhIpcCompositePart composite(Gate::create((on & 1) != 0),
                                               Gate::create((on & 2) != 0));
                composite.addPart(u"part"_qs, part, (needed & 1) != 0, (needed & 2) != 0);
                composite.addPart(u"part"_qs, secondOfTheName, false, false);
                const QSignalSpy sent(&composite, &QtAbstractVhIpcPart::sendVh);
                for (const VhMap &map : {message, nameless, VhMap{{u"name"_qs, u"other"_qs}}}) {
                    composite.processVh(map);
                    Q_EMIT part->sendVh(map);
                    Q_EMIT secondOfTheName->sendVh(map);
                }
                composite.onConnectChanged(true);
                const int passes = (needed & on) == needed ? 1 : 0;
                QCOMPARE(part->maps(), QList<VhMap>(passes, message));
                QCOMPARE(sent.size(), passes);
                QCOMPARE(part->connects().size(), passes);
                QCOMPARE(secondOfTheName->maps().size(), 0);
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
        const LogCapture log;
        QList<Part> parts;
        QtVhIpcCompositePart composite({}, {});
        for (const char *const name : {"one", "other"}) {
            const Part part = parts.emplace_back(Part::create());
            part->setReady(false);
            part->setRequiringServer(true);
            composite.addPart(QString::fromLatin1(name), part, false, false);
        }
        for (const Part &part : std::as_const(parts)) {
            QVERIFY(!composite.isReady() && composite.isRequiringServer());
            part->setReady(true);
            part->setRequiringServer(false);
        }
        QVERIFY(composite.isReady() && !composite.isRequiringServer());
        QStringList lines;
        for (const QString &line : log.texts())
            lines += line.section(u"]: "_qs, 1);
        QCOMPARE(lines.join(u", "_qs),
                 u"<one> ready: 0, ready: 0, <other> ready: 0, <one> ready: 1, <other> ready: 1, "
                 "ready: 1"_qs);
    }
};

QTEST_GUILESS_MAIN(TestQtVhIpcCompositePart)
#include "tst_qtvhipccompositepart.moc"
