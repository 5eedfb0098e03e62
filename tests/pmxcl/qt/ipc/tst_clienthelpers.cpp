// What keeps a client connected: the keeper's attempts, the launches of a server that is missing,
// and the helper that brings both together. Time is turned by hand.

#include "qtabstractserverlauncher.h"
#include "qtabstractsocketvhipc.h"
#include "qtabstractvhipcclienthelper.h"
#include "qtautomaticserverlauncher.h"
#include "qtsocketconnectionkeeper.h"
#include "recordingpart.h"
#include "rows.h"
#include "turnedclock.h"

#include <QSignalSpy>

#include <memory>
#include <utility>

using Socket = QtAbstractSocket;
using Waits = QList<qint64>;

namespace {

/// A socket that is in whatever state a test puts it, and counts the attempts to connect.
class FakeSocket : public QtAbstractSocket {
public:
    void connectToServer(const QtAbstractServerAddress &, QIODeviceBase::OpenMode) override
    {
        ++attempts;
        setState(ConnectingState);
        if (failing)
            setState(UnconnectedState);
    }
    void disconnectFromHost() override { setState(UnconnectedState); }
    void abort() override { setState(UnconnectedState); }
    QIODevice *ioDevice() const override { return nullptr; }
    bool isConnected() const override { return m_connected; }
    SocketState state() const override { return m_state; }
    AbstractError error() const override { return {}; }
    void setState(SocketState state)
    {
        m_state = state;
        Q_EMIT stateChanged(state);
        if (std::exchange(m_connected, state == ConnectedState) != (state == ConnectedState))
            Q_EMIT connectedStateChanged(m_connected);
    }

    int attempts = 0;
    /// Whether attempts fail at once; otherwise they stay under way.
    bool failing = true;

private:
    SocketState m_state = UnconnectedState;
    bool m_connected = false;
};

/// Counts the launches; each ends at once with the given code, or when the test says so.
class FakeServerLauncher : public QtAbstractServerLauncher {
public:
    void launchServer() override
    {
        ++launches;
        if (endsWith)
            finish(*endsWith);
    }
    void finish(int code)
    {
        Q_EMIT launchServerFinished(AbstractError(code, "GenericError", "test", "test"));
    }

    int launches = 0;
    std::optional<int> endsWith = 0;
};

} // namespace

class TestClientHelpers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void keeperWaitsDouble_data();
    void keeperWaitsDouble();
    void lastingConnectionStartsWaitsAnew();
    void disabledWhileWaiting();

    void spacesLaunches_data();
    void spacesLaunches();
    void restartsAfterNormalRun_data();
    void restartsAfterNormalRun();
    void nothingIsLaunchedWhileConnected();
    void disablingForgets();

    void launchesOnDemand();
    void launchIsFollowedByAnAttempt_data();
    void launchIsFollowedByAnAttempt();
    void worksWithoutLauncher();

private:
    /// Turns the clock to the next attempt; the milliseconds that took, -1 when none will come.
    qint64 waitForAttempt();
    void connectFor(qint64 msec);
    int takeAttempts() const { return std::exchange(m_socket->attempts, 0); }
    int takeLaunches() const { return std::exchange(m_launcher->launches, 0); }
    std::unique_ptr<QtAbstractVhIpcClientHelper> makeHelper();

    std::unique_ptr<TurnedClock> m_clock;
    QSharedPointer<FakeSocket> m_socket;
    QSharedPointer<QtSocketConnectionKeeper> m_keeper;
    QSharedPointer<FakeServerLauncher> m_launcher;
    std::unique_ptr<QtAutomaticServerLauncher> m_automatic;
    QSharedPointer<RecordingPart> m_part;
};

void TestClientHelpers::init()
{
    m_keeper.reset();
    m_automatic.reset();
    m_clock = std::make_unique<TurnedClock>();
    m_socket = QSharedPointer<FakeSocket>::create();
    m_keeper = QSharedPointer<QtSocketConnectionKeeper>::create(m_socket, nullptr, *m_clock);
    m_keeper->setServerAddress(QtAbstractServerAddress(u"server"_qs));
    m_launcher = QSharedPointer<FakeServerLauncher>::create();
    m_automatic = std::make_unique<QtAutomaticServerLauncher>(m_launcher, nullptr, *m_clock);
    connect(m_socket.get(), &Socket::connectedStateChanged, m_automatic.get(),
            &QtAutomaticServerLauncher::onConnectedStateChanged);
    m_part = QSharedPointer<RecordingPart>::create();
}

qint64 TestClientHelpers::waitForAttempt()
{
    m_clock->advance(0);
    takeAttempts();
    const qint64 wait = m_clock->nextTimerIn();
    if (wait < 0)
        return wait;
    m_clock->advance(wait - 1);
    if (takeAttempts() != 0)
        return 0;
    m_clock->advance(1);
    return takeAttempts() == 1 ? wait : 0;
}

void TestClientHelpers::connectFor(qint64 msec)
{
    m_socket->setState(Socket::ConnectedState);
    m_clock->advance(msec);
    m_socket->setState(Socket::UnconnectedState);
}

void TestClientHelpers::keeperWaitsDouble_data()
{
    const Rows<int, int, int, Waits> row("min", "max", "attemptsAtOnce", "waits");
    row("defaults", -1, -1, 1, {300, 600, 1200, 2400, 3000, 3000, 3000});
    row("min beyond max", 500, 100, 1, {300, 600, 1200});
    row("maximum not reached by doubling", 400, 1000, 1, {400, 800, 1000});
    row("always the same", 500, 500, 1, {500, 500});
    row("from nothing: a tenth", 0, 3000, 2, {300, 600});
    row("from nothing to 1", 0, 0, 2, {1, 1});
    row("from nothing to 19", 0, 19, 2, {1, 2, 4, 8, 16, 19});
    row("from nothing to 10010", 0, 10010, 2, {1000, 2000});
    row("the longest", 2'000'000'000, std::numeric_limits<int>::max(), 1,
        {2'000'000'000, 2'147'483'647, 2'147'483'647});
}

void TestClientHelpers::keeperWaitsDouble()
{
    QFETCH(const int, min);
    QFETCH(const int, max);
    QFETCH(const Waits, waits);
    m_keeper->setRetryInterval(min, max);
    m_keeper->enable(true);
    m_clock->advance(0);
    QTEST(takeAttempts(), "attemptsAtOnce");
    for (const qint64 wait : waits) {
        m_clock->advance(0);
        QCOMPARE(m_clock->nextTimerType(), wait < 2000 ? Qt::PreciseTimer : Qt::CoarseTimer);
        QCOMPARE(waitForAttempt(), wait);
    }
}

void TestClientHelpers::lastingConnectionStartsWaitsAnew()
{
    for (const int lasted : {2000, 2999, 3000}) {
        init();
        m_keeper->enable(true);
        QCOMPARE(waitForAttempt(), 300);
        m_socket->failing = false;
        QCOMPARE(waitForAttempt(), 600);
        connectFor(lasted);
        QCOMPARE(waitForAttempt(), lasted < 3000 ? 1200 : 300);
    }
}

void TestClientHelpers::disabledWhileWaiting()
{
    m_keeper->enable(true);
    m_clock->advance(100);
    m_keeper->enable(false);
    takeAttempts();
    m_clock->advance(10'000);
    QCOMPARE(takeAttempts(), 0);
    m_keeper->enable(true);
    QCOMPARE(takeAttempts(), 1);
    QCOMPARE(waitForAttempt(), 300);
}

void TestClientHelpers::spacesLaunches_data()
{
    const Rows<int, int, bool> row("failsAfter", "nextAfter", "clockSetBack");
    row("at once", 0, 180, false);
    row("10 s", 10, 170, false);
    row("179 s", 179, 1, false);
    row("180 s", 180, 0, false);
    row("clock set back", 0, 180, true);
}

void TestClientHelpers::spacesLaunches()
{
    QFETCH(const int, failsAfter);
    QFETCH(const int, nextAfter);
    QFETCH(const bool, clockSetBack);
    m_launcher->endsWith.reset();
    m_automatic->enable(true);
    m_automatic->enable(true);
    QCOMPARE(takeLaunches(), 1);
    m_clock->advance(failsAfter * 1000);
    if (clockSetBack)
        m_clock->setWallTime(1'000'000);
    m_launcher->finish(1);
    QCOMPARE(m_clock->nextTimerIn(), nextAfter > 0 ? nextAfter * 1000 : -1);
    m_clock->advance(nextAfter * 1000);
    QCOMPARE(takeLaunches(), 1);
    // Once it has started, only the connection shows whether it serves.
    m_launcher->finish(0);
    m_clock->advance(3'600'000);
    QCOMPARE(takeLaunches(), 0);
}

void TestClientHelpers::restartsAfterNormalRun_data()
{
    const Rows<int, int, int, int> row("lasted", "code", "launches", "nextAfter");
    // The launch was 10 s before the connection.
    row("14 s", 14, 0, 0, 156);
    row("15 s", 15, 0, 1, -1);
    row("20 s, and it cannot be launched again", 20, 1, 1, 180);
}

void TestClientHelpers::restartsAfterNormalRun()
{
    QFETCH(const int, lasted);
    QFETCH(const int, code);
    QFETCH(const int, nextAfter);
    m_automatic->enable(true);
    QCOMPARE(takeLaunches(), 1);
    m_launcher->endsWith = code;
    m_clock->advance(10'000);
    connectFor(lasted * 1000);
    QTEST(takeLaunches(), "launches");
    QCOMPARE(m_clock->nextTimerIn(), nextAfter < 0 ? -1 : nextAfter * 1000);
    // A short connection after it is judged on its own.
    if (nextAfter < 0) {
        connectFor(5000);
        QCOMPARE(takeLaunches(), 0);
        QCOMPARE(m_clock->nextTimerIn(), 175'000);
    }
}

void TestClientHelpers::nothingIsLaunchedWhileConnected()
{
    m_launcher->endsWith = 1;
    m_automatic->enable(true);
    QCOMPARE(takeLaunches(), 1);
    m_socket->setState(Socket::ConnectedState);
    QVERIFY(!m_automatic->isLaunchScheduled());
    m_automatic->launchServer();
    m_automatic->scheduleNextLaunchAttempt();
    m_clock->advance(400'000);
    QCOMPARE(takeLaunches(), 0);
    m_socket->setState(Socket::UnconnectedState);
    QCOMPARE(takeLaunches(), 1);
}

void TestClientHelpers::disablingForgets()
{
    m_launcher->endsWith = 1;
    m_automatic->enable(true);
    m_automatic->enable(false);
    connectFor(20'000);
    m_clock->advance(400'000);
    QCOMPARE(takeLaunches(), 1);
    m_automatic->enable(true);
    QCOMPARE(takeLaunches(), 1);
    QCOMPARE(m_clock->nextTimerIn(), 180'000);
}

std::unique_ptr<QtAbstractVhIpcClientHelper> TestClientHelpers::makeHelper()
{
    const auto link = QSharedPointer<QtAbstractSocketVhIpc>::create(m_socket, m_part, 0, false);
    return std::make_unique<QtAbstractVhIpcClientHelper>(m_socket, m_keeper, m_launcher, link,
                                                         nullptr, *m_clock);
}

void TestClientHelpers::launchesOnDemand()
{
    for (const bool earlyDemand : {false, true}) {
        init();
        m_part->setRequiringServer(earlyDemand);
        const auto helper = makeHelper();
        QVERIFY(!m_keeper->isEnabled());
        helper->enable(true);
        QVERIFY(m_keeper->isEnabled());
        QCOMPARE(takeLaunches(), int(earlyDemand));
        m_part->setRequiringServer(true);
        QCOMPARE(takeLaunches(), int(!earlyDemand));
        m_part->setRequiringServer(false);
        helper->enable(false);
        m_part->setRequiringServer(true);
        QCOMPARE(takeLaunches(), 0);
        helper->enable(true);
        QCOMPARE(takeLaunches(), 1);
    }
}

void TestClientHelpers::launchIsFollowedByAnAttempt_data()
{
    const Rows<int, bool, int> row("code", "connected", "attempts");
    row("launched", 0, false, 1);
    row("failed", 1, false, 0);
    row("connected by then", 0, true, 0);
}

void TestClientHelpers::launchIsFollowedByAnAttempt()
{
    QFETCH(const int, code);
    QFETCH(const bool, connected);
    m_launcher->endsWith.reset();
    const auto helper = makeHelper();
    helper->enable(true);
    m_part->setRequiringServer(true);
    // The keeper's own attempts: at once, after 300, 600 and 1200 ms; the next 2400 ms later.
    m_clock->advance(2100);
    QCOMPARE(takeAttempts(), 4);
    if (connected)
        m_socket->setState(Socket::ConnectedState);
    m_launcher->finish(code);
    QTEST(takeAttempts(), "attempts");
}

void TestClientHelpers::worksWithoutLauncher()
{
    m_launcher.reset();
    const auto keeping = makeHelper();
    QVERIFY(!keeping->isAutomaticServerLauncherSupported());
    keeping->enable(true);
    m_part->setRequiringServer(true);
    QCOMPARE(takeAttempts(), 1);
}

QTEST_GUILESS_MAIN(TestClientHelpers)
#include "tst_clienthelpers.moc"
