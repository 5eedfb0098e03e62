#include "qtappdelayedshutdownmanager.h"

#include <QTest>

#include <functional>
#include <memory>
#include <thread>

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

    void waitsForHolders_data()
    {
        QTest::addColumn<bool>("destroy");
        QTest::newRow("unregistered") << false;
        QTest::newRow("destroyed") << true;
    }

    void waitsForHolders()
    {
        QFETCH(const bool, destroy);
        QObject other;
        auto holder = std::make_unique<QObject>();
        // Registered twice, and once only when the request comes.
        m_manager->registerObject(holder.get(), true);
        m_manager->registerObject(holder.get(), true);
        connect(m_manager.get(), &QtAppDelayedShutdownManager::shutdownRequested, &other,
                [&] { m_manager->registerObject(&other, true); });
        QVERIFY(leavesLoop([&] {
            m_manager->shutdownApp(QString());
            m_manager->registerObject(&other, false);
            QTimer::singleShot(0, this, [&] {
                m_seen.append(u"released"_qs);
                if (destroy)
                    holder.reset();
                else
                    m_manager->registerObject(holder.get(), false);
            });
        }));
        QCOMPARE(takeSeen(), u"requested released ready"_qs);
    }

    void lettingGoWithoutRequest()
    {
        QObject holder;
        connect(&holder, &QObject::objectNameChanged, m_manager.get(),
                &QtAppDelayedShutdownManager::shutdownAppViaConnection);
        QVERIFY(leavesLoop([&] {
            m_manager->registerObject(&holder, true);
            m_manager->registerObject(&holder, false);
            // That breaks the connections from it, too.
            holder.setObjectName(u"holder"_qs);
            QCOMPARE(takeSeen(), QString());
            m_manager->shutdownApp(QString());
        }));
    }
};

QTEST_GUILESS_MAIN(TestQtAppDelayedShutdownManager)
#include "tst_qtappdelayedshutdownmanager.moc"
