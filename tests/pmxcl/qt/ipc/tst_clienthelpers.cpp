#include "fakeserverlauncher.h"
#include "fakesocket.h"
#include "qtabstractsocketvhipc.h"
#include "qtabstractvhipcclienthelper.h"
#include "qtsocketconnectionkeeper.h"
#include "recordingpart.h"
#include "turnedclock.h"

#include <QTest>

#include <memory>

using Socket = QtAbstractSocket;

class TestClientHelpers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void launchesOnDemand();
    void demandThatWasThereBefore();
    void launchIsFollowedByAnAttempt_data();
    void launchIsFollowedByAnAttempt();
    void connectedLinkLaunchesNothing();
    void worksWithoutLauncherAndKeeper();

private:
    std::unique_ptr<QtAbstractVhIpcClientHelper> makeHelper()
    {
        return std::make_unique<QtAbstractVhIpcClientHelper>(m_socket, m_keeper, m_launcher, m_link,
                                                             nullptr, *m_clock);
    }

    std::unique_ptr<TurnedClock> m_clock;
    QSharedPointer<FakeSocket> m_socket;
    QSharedPointer<QtSocketConnectionKeeper> m_keeper;
    QSharedPointer<FakeServerLauncher> m_launcher;
    QSharedPointer<RecordingPart> m_part;
    QSharedPointer<QtAbstractSocketVhIpc> m_link;
};

void TestClientHelpers::init()
{
    m_keeper.reset();
    m_clock = std::make_unique<TurnedClock>();
    m_socket = QSharedPointer<FakeSocket>::create();
    m_keeper = QSharedPointer<QtSocketConnectionKeeper>::create(m_socket, nullptr, *m_clock);
    m_keeper->setServerAddress(QtAbstractServerAddress(QStringLiteral("server")));
    m_launcher = QSharedPointer<FakeServerLauncher>::create();
    m_part = QSharedPointer<RecordingPart>::create();
    m_link = QSharedPointer<QtAbstractSocketVhIpc>::create(m_socket, m_part, 0, false);
}

void TestClientHelpers::launchesOnDemand()
{
    const auto helper = makeHelper();
    QVERIFY(helper->isAutomaticServerLauncherSupported());
    QVERIFY(!m_keeper->isEnabled());
    helper->enable(true);
    QVERIFY(m_keeper->isEnabled());
    QCOMPARE(m_launcher->takeLaunches(), 0);
    m_part->setRequiringServer(true);
    QCOMPARE(m_launcher->takeLaunches(), 1);
    m_part->setRequiringServer(false);
    helper->enable(false);
    QVERIFY(!m_keeper->isEnabled());
    m_part->setRequiringServer(true);
    QCOMPARE(m_launcher->takeLaunches(), 0);
    helper->enable(true);
    QCOMPARE(m_launcher->takeLaunches(), 1);
}

void TestClientHelpers::demandThatWasThereBefore()
{
    m_part->setRequiringServer(true);
    const auto helper = makeHelper();
    QCOMPARE(m_launcher->takeLaunches(), 0);
    helper->enable(true);
    QCOMPARE(m_launcher->takeLaunches(), 1);
}

void TestClientHelpers::launchIsFollowedByAnAttempt_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("connected");
    QTest::addColumn<int>("attempts");
    QTest::newRow("launched") << 0 << false << 1;
    QTest::newRow("failed") << 1 << false << 0;
    QTest::newRow("connected by then") << 0 << true << 0;
}

void TestClientHelpers::launchIsFollowedByAnAttempt()
{
    QFETCH(const int, code);
    QFETCH(const bool, connected);
    QFETCH(const int, attempts);
    m_launcher->setEnds(FakeServerLauncher::Ends::Later);
    const auto helper = makeHelper();
    helper->enable(true);
    m_part->setRequiringServer(true);
    // The keeper's own attempts: at once, after 300, 600 and 1200 ms; the next 2400 ms later.
    m_clock->advance(2100);
    QCOMPARE(m_socket->takeAttempts(), 4);
    if (connected)
        m_socket->setState(Socket::ConnectedState);
    m_launcher->finish(code);
    QCOMPARE(m_socket->takeAttempts(), attempts);
}

void TestClientHelpers::connectedLinkLaunchesNothing()
{
    m_socket->setState(Socket::ConnectedState);
    const auto helper = makeHelper();
    helper->enable(true);
    m_part->setRequiringServer(true);
    QCOMPARE(m_launcher->takeLaunches(), 0);
    m_socket->setState(Socket::UnconnectedState);
    QCOMPARE(m_launcher->takeLaunches(), 1);
}

void TestClientHelpers::worksWithoutLauncherAndKeeper()
{
    m_launcher.reset();
    const auto keeping = makeHelper();
    QVERIFY(!keeping->isAutomaticServerLauncherSupported());
    keeping->enable(true);
    m_part->setRequiringServer(true);
    QCOMPARE(m_socket->takeAttempts(), 1);
    m_keeper.reset();
    const auto idle = makeHelper();
    idle->enable(true);
    idle->forceConnect();
    QCOMPARE(m_socket->takeAttempts(), 0);
}

QTEST_GUILESS_MAIN(TestClientHelpers)
#include "tst_clienthelpers.moc"
