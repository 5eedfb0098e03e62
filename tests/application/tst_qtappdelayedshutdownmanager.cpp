#include "qtappdelayedshutdownmanager.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>
#include <thread>
#include <utility>

class TestQtAppDelayedShutdownManager : public QObject {
    Q_OBJECT
    std::unique_ptr<QtAppDelayedShutdownManager> m_manager;
    /// "requested", "ready", and what the tests add, in order.
    QStringList m_seen;

    /// Runs the application's event loop with the function as its first work. Returns whether it
    /// was left by itself.
    bool leavesLoop(const std::function<void()> &inLoop = {})
    {
        QTimer giveUp;
        giveUp.callOnTimeout([] { QCoreApplication::exit(99); });
        giveUp.start(10'000);
        if (inLoop)
            QTimer::singleShot(0, this, inLoop);
        return QCoreApplication::exec() == 0;
    }
    QString takeSeen() { return std::exchange(m_seen, {}).join(u' '); }

private Q_SLOTS:
    void init()
    {
        m_manager = std::make_unique<QtAppDelayedShutdownManager>();
        m_seen.clear();
        connect(m_manager.get(), &QtAppDelayedShutdownManager::shutdownRequested, this,
                [this] { m_seen.append(u"requested"_qs); });
        connect(m_manager.get(), &QtAppDelayedShutdownManager::readyToQuit, this,
                [this] { m_seen.append(u"ready"_qs); });
    }

    void firstRequestWins()
    {
        m_manager->registerObject(nullptr, true);
        std::thread([this] { m_manager->shutdownAppQueued(u"thread"_qs); }).join();
        QCOMPARE(takeSeen(), QString());
        m_manager->shutdownApp(u"early"_qs);
        QCOMPARE(takeSeen(), u"requested"_qs);
        QVERIFY(leavesLoop());
        QCOMPARE(m_manager->shutdownReason(), u"early"_qs);
        QCOMPARE(takeSeen(), u"ready"_qs);
    }

    void waitsForHolders()
    {
        QObject other;
        QObject unregistered;
        auto destroyed = std::make_unique<QObject>();
        connect(&other, &QObject::objectNameChanged, m_manager.get(),
                &QtAppDelayedShutdownManager::shutdownAppViaConnection);
        QVERIFY(leavesLoop([&] {
            // Letting go asks for nothing, and breaks the connections, too.
            m_manager->registerObject(&other, true);
            m_manager->registerObject(&other, false);
            other.setObjectName(u"other"_qs);
            QCOMPARE(takeSeen(), QString());

            for (QObject *holder : {&unregistered, &unregistered, destroyed.get()})
                m_manager->registerObject(holder, true);
            connect(m_manager.get(), &QtAppDelayedShutdownManager::shutdownRequested, &other,
                    [&] { m_manager->registerObject(&other, true); });
            m_manager->shutdownApp(QString());
            m_manager->registerObject(&other, false);
            m_manager->registerObject(&unregistered, false);
            QTimer::singleShot(0, this, [&] {
                m_seen.append(u"released"_qs);
                destroyed.reset();
            });
        }));
        QCOMPARE(takeSeen(), u"requested released ready"_qs);
    }
};

QTEST_GUILESS_MAIN(TestQtAppDelayedShutdownManager)
#include "tst_qtappdelayedshutdownmanager.moc"
