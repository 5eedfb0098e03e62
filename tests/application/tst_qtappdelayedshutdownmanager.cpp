#include "qtappdelayedshutdownmanager.h"

#include <QCoreApplication>
#include <QTest>

#include <memory>
#include <thread>

class TestQtAppDelayedShutdownManager : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void waitsForLoopAndHolders()
    {
        QtAppDelayedShutdownManager manager;
        QStringList seen;
        connect(&manager, &QtAppDelayedShutdownManager::shutdownRequested, &manager,
                [&] { seen.append(u"requested"_qs); });
        connect(&manager, &QtAppDelayedShutdownManager::readyToQuit, &manager,
                [&] { seen.append(u"ready"_qs); });
        QObject asking;
        QObject unregistered;
        auto destroyed = std::make_unique<QObject>();
        connect(&asking, &QObject::objectNameChanged, &manager,
                &QtAppDelayedShutdownManager::shutdownAppViaConnection);
        // Unregistering requests no shutdown, and disconnects the object's signals.
        for (const bool hold : {true, false})
            manager.registerObject(&asking, hold);
        asking.setObjectName(u"asking"_qs);
        for (QObject *const holder :
             {static_cast<QObject *>(nullptr), &unregistered, &unregistered, destroyed.get()})
            manager.registerObject(holder, true);

        std::thread([&] { manager.shutdownAppQueued(u"thread"_qs); }).join();
        QVERIFY(seen.isEmpty());
        manager.shutdownApp(u"early"_qs);
        manager.registerObject(&unregistered, false);
        QMetaObject::invokeMethod(
            &manager,
            [&] {
                seen.append(u"released"_qs);
                destroyed.reset();
            },
            Qt::QueuedConnection);
        QCOMPARE(QCoreApplication::exec(), 0);
        manager.registerObject(&asking, false); // it quits once
        QCOMPARE(seen.join(u' '), u"requested released ready"_qs);
        QCOMPARE(manager.shutdownReason(), u"early"_qs);
    }
};

QTEST_GUILESS_MAIN(TestQtAppDelayedShutdownManager)
#include "tst_qtappdelayedshutdownmanager.moc"
