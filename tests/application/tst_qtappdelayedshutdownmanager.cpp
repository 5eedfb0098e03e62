#include "qtappdelayedshutdownmanager.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>
#include <thread>

namespace {

/// Runs the application's event loop with the function as its first work. Returns whether it was
/// left by itself.
bool leavesLoop(const std::function<void()> &inLoop = {})
{
    constexpr int notLeft = 99;
    QTimer giveUp;
    giveUp.callOnTimeout([] { QCoreApplication::exit(notLeft); });
    giveUp.start(10'000);
    if (inLoop)
        QTimer::singleShot(0, QCoreApplication::instance(), inLoop);
    return QCoreApplication::exec() == 0;
}

class Emitter : public QObject {
    Q_OBJECT
Q_SIGNALS:
    void finished();
};

} // namespace

class TestQtAppDelayedShutdownManager : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void quitsAtOnceWhenNobodyHolds();
    void firstRequestWins();
    void requestedBeforeTheLoopRuns();
    void waitsForHolders_data();
    void waitsForHolders();
    void holderOfTheLastMoment();
    void lettingGoWithoutRequestDoesNotQuit();
    void lettingGoBreaksConnections();
    void requestedFromAnotherThread();
    void requestedByConnection();
    void nullObjectIsIgnored();

private:
    std::unique_ptr<QtAppDelayedShutdownManager> m_manager;
    /// "requested", "ready", in the order of the signals.
    QStringList m_signals;
};

void TestQtAppDelayedShutdownManager::init()
{
    m_manager = std::make_unique<QtAppDelayedShutdownManager>();
    m_signals.clear();
    connect(m_manager.get(), &QtAppDelayedShutdownManager::shutdownRequested, this,
            [this] { m_signals.append(QStringLiteral("requested")); });
    connect(m_manager.get(), &QtAppDelayedShutdownManager::readyToQuit, this,
            [this] { m_signals.append(QStringLiteral("ready")); });
}

void TestQtAppDelayedShutdownManager::cleanup() { m_manager.reset(); }

void TestQtAppDelayedShutdownManager::quitsAtOnceWhenNobodyHolds()
{
    QVERIFY(leavesLoop([this] {
        m_manager->shutdownApp(QStringLiteral("why"));
        QCOMPARE(m_signals, (QStringList{QStringLiteral("requested"), QStringLiteral("ready")}));
    }));
    QCOMPARE(m_manager->shutdownReason(), u"why");
}

void TestQtAppDelayedShutdownManager::firstRequestWins()
{
    m_manager->shutdownApp(QString());
    m_manager->shutdownApp(QStringLiteral("second"));
    QVERIFY(leavesLoop());
    m_manager->shutdownApp(QStringLiteral("third"));
    QCOMPARE(m_manager->shutdownReason(), QString());
    QCOMPARE(m_signals, (QStringList{QStringLiteral("requested"), QStringLiteral("ready")}));
}

void TestQtAppDelayedShutdownManager::requestedBeforeTheLoopRuns()
{
    m_manager->shutdownApp(QStringLiteral("early"));
    QCOMPARE(m_signals, QStringList{QStringLiteral("requested")});
    QVERIFY(leavesLoop());
    QCOMPARE(m_signals.size(), 2);
}

void TestQtAppDelayedShutdownManager::waitsForHolders_data()
{
    QTest::addColumn<int>("registrations");
    QTest::addColumn<bool>("destroy");
    QTest::newRow("unregistered") << 1 << false;
    QTest::newRow("destroyed") << 1 << true;
    QTest::newRow("registered twice, unregistered once") << 2 << false;
}

void TestQtAppDelayedShutdownManager::waitsForHolders()
{
    QFETCH(const int, registrations);
    QFETCH(const bool, destroy);
    QObject other;
    auto holder = std::make_unique<QObject>();
    m_manager->registerObject(&other, true);
    for (int i = 0; i < registrations; ++i)
        m_manager->registerObject(holder.get(), true);

    QVERIFY(leavesLoop([&] {
        m_manager->shutdownApp(QString());
        m_manager->registerObject(&other, false);
        QTimer::singleShot(0, this, [&] {
            QCOMPARE(m_signals, QStringList{QStringLiteral("requested")});
            if (destroy)
                holder.reset();
            else
                m_manager->registerObject(holder.get(), false);
            QCOMPARE(m_signals.size(), 2);
        });
    }));
}

void TestQtAppDelayedShutdownManager::holderOfTheLastMoment()
{
    // Who hears of the request may still ask for time.
    QObject holder;
    connect(m_manager.get(), &QtAppDelayedShutdownManager::shutdownRequested, &holder,
            [this, late = &holder] { m_manager->registerObject(late, true); });
    QVERIFY(leavesLoop([&] {
        m_manager->shutdownApp(QString());
        QCOMPARE(m_signals, QStringList{QStringLiteral("requested")});
        m_manager->registerObject(&holder, false);
    }));
}

void TestQtAppDelayedShutdownManager::lettingGoWithoutRequestDoesNotQuit()
{
    QObject holder;
    QVERIFY(leavesLoop([&] {
        m_manager->registerObject(&holder, true);
        m_manager->registerObject(&holder, false);
        QCOMPARE(m_signals, QStringList());
        m_manager->registerObject(&holder, true);
        m_manager->shutdownApp(QString());
        QCOMPARE(m_signals.size(), 1);
        m_manager->registerObject(&holder, false);
    }));
}

void TestQtAppDelayedShutdownManager::lettingGoBreaksConnections()
{
    Emitter emitter;
    connect(&emitter, &Emitter::finished, m_manager.get(),
            &QtAppDelayedShutdownManager::shutdownAppViaConnection);
    m_manager->registerObject(&emitter, true);
    m_manager->registerObject(&emitter, false);
    Q_EMIT emitter.finished();
    QCOMPARE(m_signals, QStringList());
}

void TestQtAppDelayedShutdownManager::requestedFromAnotherThread()
{
    std::thread([this] { m_manager->shutdownAppQueued(QStringLiteral("thread")); }).join();
    QCOMPARE(m_signals, QStringList());
    QVERIFY(leavesLoop());
    QCOMPARE(m_manager->shutdownReason(), u"thread");
}

void TestQtAppDelayedShutdownManager::requestedByConnection()
{
    Emitter emitter;
    emitter.setObjectName(QStringLiteral("console reader"));
    connect(&emitter, &Emitter::finished, m_manager.get(),
            &QtAppDelayedShutdownManager::shutdownAppViaConnection);
    QVERIFY(leavesLoop([&] { Q_EMIT emitter.finished(); }));
    QCOMPARE(m_manager->shutdownReason(), u"console reader");

    init();
    m_manager->shutdownAppViaConnection();
    QCOMPARE(m_signals.size(), 1);
    QCOMPARE(m_manager->shutdownReason(), QString());
}

void TestQtAppDelayedShutdownManager::nullObjectIsIgnored()
{
    m_manager->registerObject(nullptr, true);
    QVERIFY(leavesLoop([this] { m_manager->shutdownApp(QString()); }));
    m_manager->registerObject(nullptr, false);
}

QTEST_GUILESS_MAIN(TestQtAppDelayedShutdownManager)
#include "tst_qtappdelayedshutdownmanager.moc"
