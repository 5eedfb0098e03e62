#include "logcapture.h"
#include "qtobjectfactory.h"
#include "qttoggleswitchobject.h"
#include "uniqueint64idgen.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>
#include <thread>
#include <vector>

class TestQtQObjectsTracker : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void logsWhatIsAliveAtExit();
    void cleanExitLogsNothing();
    void factoryWithoutTracker();
    void objectsOfManyThreads();
    void toggleTellsOfChangesOnly();
};

void TestQtQObjectsTracker::logsWhatIsAliveAtExit()
{
    const LogCapture log;
    auto tracker = std::make_unique<QtQObjectsTracker>();
    QCOMPARE(QtQObjectsTracker::instance(), tracker.get());
    const auto leaked = qtCreateObject<QtToggleSwitchObject>(true);
    const auto other = qtCreateObject<QTimer>();
    qtCreateObject<QtToggleSwitchObject>(false);
    QVERIFY(leaked->isOn());
    QVERIFY(!leaked->parent());

    tracker.reset();
    QVERIFY(!QtQObjectsTracker::instance());
    QCOMPARE(log.texts(),
             (QStringList{
                 QStringLiteral("[QtQObjectsTracker]: WARNING: still alive at exit: QTimer"),
                 QStringLiteral(
                     "[QtQObjectsTracker]: WARNING: still alive at exit: QtToggleSwitchObject")}));
}

void TestQtQObjectsTracker::cleanExitLogsNothing()
{
    const LogCapture log;
    {
        const QtQObjectsTracker tracker;
        const auto object = qtCreateObject<QtToggleSwitchObject>(true);
        qtTrackObject(object.data());
        QCOMPARE(tracker.aliveObjects().size(), 1);
    }
    QCOMPARE(log.texts(), QStringList());
}

void TestQtQObjectsTracker::factoryWithoutTracker()
{
    QVERIFY(!QtQObjectsTracker::instance());
    QVERIFY(qtCreateObject<QtToggleSwitchObject>(true));
}

void TestQtQObjectsTracker::objectsOfManyThreads()
{
    const QtQObjectsTracker tracker;
    UniqueInt64IdGen ids;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&ids] {
            for (int i = 0; i < 500; ++i) {
                qtCreateObject<QtToggleSwitchObject>(false);
                ids.nextId();
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(tracker.aliveObjects(), QStringList());
    QCOMPARE(ids.nextId(), 2001);
}

void TestQtQObjectsTracker::toggleTellsOfChangesOnly()
{
    QtToggleSwitchObject toggle(true);
    const QSignalSpy spy(&toggle, &QtToggleSwitchObject::changed);
    for (const bool on : {true, false, false, true})
        toggle.setOn(on);
    QCOMPARE(spy, (QList<QVariantList>{{false}, {true}}));
    QVERIFY(toggle.isOn());
}

QTEST_GUILESS_MAIN(TestQtQObjectsTracker)
#include "tst_qtqobjectstracker.moc"
