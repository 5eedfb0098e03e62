#include "logcapture.h"
#include "qtobjectfactory.h"
#include "qttoggleswitchobject.h"
#include "uniqueint64idgen.h"

#include <QTest>
#include <QTimer>

#include <memory>
#include <thread>
#include <vector>

class TestQtQObjectsTracker : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void logsWhatIsAliveAtExit()
    {
        const LogCapture log;
        auto tracker = std::make_unique<QtQObjectsTracker>();
        UniqueInt64IdGen ids;
        const auto leaked = qtCreateObject<QtToggleSwitchObject>(true);
        const auto other = qtCreateObject<QTimer>();
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
        QCOMPARE(ids.nextId(), 2001);
        tracker.reset();
        const QString line = u"[QtQObjectsTracker]: WARNING: still alive at exit: "_qs;
        QCOMPARE(log.texts(),
                 QStringList({line + u"QTimer"_qs, line + u"QtToggleSwitchObject"_qs}));
        QVERIFY(qtCreateObject<QtToggleSwitchObject>(true));
    }
};

QTEST_GUILESS_MAIN(TestQtQObjectsTracker)
#include "tst_qtqobjectstracker.moc"
