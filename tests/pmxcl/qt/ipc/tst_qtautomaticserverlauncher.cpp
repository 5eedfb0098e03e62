#include "fakeserverlauncher.h"
#include "qtautomaticserverlauncher.h"
#include "turnedclock.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace std::chrono_literals;
using std::chrono::seconds;

class TestQtAutomaticServerLauncher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void launchesOnceWhenEnabled();
    void spacesLaunches_data();
    void spacesLaunches();
    void restartsAfterNormalRun_data();
    void restartsAfterNormalRun();
    void serverThatVanishedIsNotTriedWithoutPause();
    void connectionCancelsTheTimer();
    void nothingIsLaunchedWhileConnected();
    void disablingForgets();
    void tellsOfEachLaunch();
    void survivesAClockThatIsSetBack();

private:
    void advance(seconds time) { m_clock->advance(std::chrono::milliseconds(time).count()); }
    void connectFor(seconds time)
    {
        m_automatic->onConnectedStateChanged(true);
        advance(time);
        m_automatic->onConnectedStateChanged(false);
    }

    std::unique_ptr<TurnedClock> m_clock;
    QSharedPointer<FakeServerLauncher> m_launcher;
    std::unique_ptr<QtAutomaticServerLauncher> m_automatic;
};

void TestQtAutomaticServerLauncher::init()
{
    m_automatic.reset();
    m_clock = std::make_unique<TurnedClock>();
    m_launcher = QSharedPointer<FakeServerLauncher>::create();
    m_automatic = std::make_unique<QtAutomaticServerLauncher>(m_launcher, nullptr, *m_clock);
}

void TestQtAutomaticServerLauncher::launchesOnceWhenEnabled()
{
    QCOMPARE(m_launcher->takeLaunches(), 0);
    m_automatic->enable(true);
    m_automatic->enable(true);
    QCOMPARE(m_launcher->takeLaunches(), 1);
    // It started; whether it ever serves is seen by the connection.
    advance(1h);
    QCOMPARE(m_launcher->takeLaunches(), 0);
    QVERIFY(!m_automatic->isLaunchScheduled());
}

void TestQtAutomaticServerLauncher::spacesLaunches_data()
{
    QTest::addColumn<int>("failsAfter");
    QTest::addColumn<int>("nextAfter");
    QTest::newRow("at once") << 0 << 180;
    QTest::newRow("10 s") << 10 << 170;
    QTest::newRow("179 s") << 179 << 1;
    QTest::newRow("180 s") << 180 << 0;
    QTest::newRow("an hour") << 3600 << 0;
}

void TestQtAutomaticServerLauncher::spacesLaunches()
{
    QFETCH(const int, failsAfter);
    QFETCH(const int, nextAfter);
    m_launcher->setEnds(FakeServerLauncher::Ends::Later);
    m_automatic->enable(true);
    QCOMPARE(m_launcher->takeLaunches(), 1);
    advance(seconds(failsAfter));
    m_launcher->finish(1);
    QCOMPARE(m_automatic->isLaunchScheduled(), nextAfter > 0);
    if (nextAfter > 0) {
        advance(seconds(nextAfter - 1));
        QCOMPARE(m_launcher->takeLaunches(), 0);
        advance(1s);
    }
    QCOMPARE(m_launcher->takeLaunches(), 1);
    QVERIFY(!m_automatic->isLaunchScheduled());
}

void TestQtAutomaticServerLauncher::restartsAfterNormalRun_data()
{
    QTest::addColumn<int>("lasted");
    QTest::addColumn<int>("launches");
    QTest::addColumn<int>("timer");
    // The launch was 10 s before the connection.
    QTest::newRow("14 s") << 14 << 0 << 156;
    QTest::newRow("15 s") << 15 << 1 << 0;
    QTest::newRow("20 s") << 20 << 1 << 0;
}

void TestQtAutomaticServerLauncher::restartsAfterNormalRun()
{
    QFETCH(const int, lasted);
    QFETCH(const int, launches);
    QFETCH(const int, timer);
    m_automatic->enable(true);
    QCOMPARE(m_launcher->takeLaunches(), 1);
    advance(10s);
    connectFor(seconds(lasted));
    QCOMPARE(m_launcher->takeLaunches(), launches);
    QCOMPARE(m_clock->nextTimerIn(), timer > 0 ? timer * 1000 : -1);
    // A short connection after it is judged on its own.
    if (launches > 0) {
        connectFor(5s);
        QCOMPARE(m_launcher->takeLaunches(), 0);
        QCOMPARE(m_clock->nextTimerIn(), 175'000);
    }
}

void TestQtAutomaticServerLauncher::serverThatVanishedIsNotTriedWithoutPause()
{
    m_automatic->enable(true);
    m_launcher->takeLaunches();
    m_launcher->setEnds(FakeServerLauncher::Ends::AtOnceFailed);
    connectFor(20s);
    QCOMPARE(m_launcher->takeLaunches(), 1);
    QCOMPARE(m_clock->nextTimerIn(), 180'000);
    advance(180s);
    QCOMPARE(m_launcher->takeLaunches(), 1);
    QCOMPARE(m_clock->nextTimerIn(), 180'000);
}

void TestQtAutomaticServerLauncher::connectionCancelsTheTimer()
{
    m_launcher->setEnds(FakeServerLauncher::Ends::AtOnceFailed);
    m_automatic->enable(true);
    QVERIFY(m_automatic->isLaunchScheduled());
    m_automatic->onConnectedStateChanged(true);
    QVERIFY(!m_automatic->isLaunchScheduled());
    advance(400s);
    QCOMPARE(m_launcher->takeLaunches(), 1);
}

void TestQtAutomaticServerLauncher::nothingIsLaunchedWhileConnected()
{
    m_automatic->onConnectedStateChanged(true);
    m_automatic->enable(true);
    m_automatic->launchServer();
    m_automatic->scheduleNextLaunchAttempt();
    QCOMPARE(m_launcher->takeLaunches(), 0);
    m_automatic->onConnectedStateChanged(false);
    m_automatic->onConnectedStateChanged(false);
    QCOMPARE(m_launcher->takeLaunches(), 1);
}

void TestQtAutomaticServerLauncher::disablingForgets()
{
    m_launcher->setEnds(FakeServerLauncher::Ends::AtOnceFailed);
    m_automatic->enable(true);
    m_automatic->enable(false);
    QVERIFY(!m_automatic->isLaunchScheduled());
    connectFor(20s);
    advance(400s);
    QCOMPARE(m_launcher->takeLaunches(), 1);
    m_automatic->enable(true);
    QCOMPARE(m_launcher->takeLaunches(), 1);
    QCOMPARE(m_clock->nextTimerIn(), 180'000);
}

void TestQtAutomaticServerLauncher::tellsOfEachLaunch()
{
    QSignalSpy finished(m_automatic.get(), &QtAutomaticServerLauncher::launchServerFinished);
    m_launcher->finish(0);
    QCOMPARE(finished.size(), 0);
    m_automatic->enable(true);
    m_launcher->setEnds(FakeServerLauncher::Ends::AtOnceFailed);
    m_automatic->launchServer();
    QCOMPARE(finished.size(), 2);
    QCOMPARE(finished.at(0).at(0).value<AbstractError>().code(), 0);
    QCOMPARE(finished.at(1).at(0).value<AbstractError>().code(), 1);
}

void TestQtAutomaticServerLauncher::survivesAClockThatIsSetBack()
{
    m_launcher->setEnds(FakeServerLauncher::Ends::Later);
    m_automatic->enable(true);
    m_clock->setWallTime(1'000'000);
    m_launcher->finish(1);
    QCOMPARE(m_clock->nextTimerIn(), 180'000);
}

QTEST_GUILESS_MAIN(TestQtAutomaticServerLauncher)
#include "tst_qtautomaticserverlauncher.moc"
