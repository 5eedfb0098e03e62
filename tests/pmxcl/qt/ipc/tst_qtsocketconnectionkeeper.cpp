#include "fakesocket.h"
#include "qtsocketconnectionkeeper.h"
#include "turnedclock.h"

#include <QTest>

#include <memory>

using Socket = QtAbstractSocket;

class TestQtSocketConnectionKeeper : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void waitsDouble_data();
    void waitsDouble();
    void ignoresBadIntervals_data();
    void ignoresBadIntervals();
    void intervalIsClamped();
    void lastingConnectionStartsWaitsAnew_data();
    void lastingConnectionStartsWaitsAnew();
    void coarseTimerForLongWaits();
    void disabledWhileWaiting();
    void forceConnectStartsWaitsAnew();
    void connectsOnlyWhenItMay_data();
    void connectsOnlyWhenItMay();
    void proxyAuthErrorStopsAttempts();

private:
    /// Turns the clock to the next attempt; the milliseconds that took, -1 when none will come.
    qint64 waitForAttempt()
    {
        m_socket->takeAttempts();
        m_clock->advance(0);
        const qint64 wait = m_clock->nextTimerIn();
        if (wait < 0)
            return wait;
        m_clock->advance(wait - 1);
        if (m_socket->takeAttempts() != 0)
            return 0;
        m_clock->advance(1);
        return m_socket->takeAttempts() == 1 ? wait : 0;
    }
    void connectFor(qint64 msec)
    {
        m_socket->setState(Socket::ConnectedState);
        m_clock->advance(msec);
        m_socket->setState(Socket::UnconnectedState);
    }

    std::unique_ptr<TurnedClock> m_clock;
    QSharedPointer<FakeSocket> m_socket;
    std::unique_ptr<QtSocketConnectionKeeper> m_keeper;
};

void TestQtSocketConnectionKeeper::init()
{
    m_keeper.reset();
    m_clock = std::make_unique<TurnedClock>();
    m_socket = QSharedPointer<FakeSocket>::create();
    m_keeper = std::make_unique<QtSocketConnectionKeeper>(m_socket, nullptr, *m_clock);
    m_keeper->setServerAddress(QtAbstractServerAddress(QStringLiteral("server")));
}

void TestQtSocketConnectionKeeper::waitsDouble_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("attemptsAtOnce");
    QTest::addColumn<QList<qint64>>("waits");
    using Waits = QList<qint64>;
    QTest::newRow("defaults") << -1 << -1 << 1 << Waits{300, 600, 1200, 2400, 3000, 3000, 3000};
    QTest::newRow("maximum not reached by doubling") << 400 << 1000 << 1 << Waits{400, 800, 1000};
    QTest::newRow("always the same") << 500 << 500 << 1 << Waits{500, 500};
    QTest::newRow("from nothing: a tenth") << 0 << 3000 << 2 << Waits{300, 600};
    QTest::newRow("from nothing to 1") << 0 << 0 << 2 << Waits{1, 1};
    QTest::newRow("from nothing to 19") << 0 << 19 << 2 << Waits{1, 2, 4, 8, 16, 19};
    QTest::newRow("from nothing to 10009") << 0 << 10009 << 2 << Waits{1000, 2000};
    QTest::newRow("from nothing to 10010") << 0 << 10010 << 2 << Waits{1000, 2000};
    QTest::newRow("the longest") << 2'000'000'000 << std::numeric_limits<int>::max() << 1
                                 << Waits{2'000'000'000, 2'147'483'647, 2'147'483'647};
}

void TestQtSocketConnectionKeeper::waitsDouble()
{
    QFETCH(const int, min);
    QFETCH(const int, max);
    QFETCH(const QList<qint64>, waits);
    m_keeper->setRetryInterval(min, max);
    m_keeper->enable(true);
    m_clock->advance(0);
    QTEST(m_socket->takeAttempts(), "attemptsAtOnce");
    for (const qint64 wait : waits)
        QCOMPARE(waitForAttempt(), wait);
}

void TestQtSocketConnectionKeeper::ignoresBadIntervals_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::newRow("min beyond max") << 500 << 100;
    QTest::newRow("negative") << -1 << 5000;
}

void TestQtSocketConnectionKeeper::ignoresBadIntervals()
{
    QFETCH(const int, min);
    QFETCH(const int, max);
    m_keeper->setRetryInterval(100, 200);
    m_keeper->setRetryInterval(min, max);
    m_keeper->enable(true);
    QCOMPARE(waitForAttempt(), 100);
    QCOMPARE(waitForAttempt(), 200);
}

void TestQtSocketConnectionKeeper::intervalIsClamped()
{
    m_keeper->enable(true);
    QCOMPARE(waitForAttempt(), 300);
    QCOMPARE(waitForAttempt(), 600);
    // The wait under way stays as it was begun, 1200; the next would be 2400.
    m_clock->advance(0);
    m_keeper->setRetryInterval(10, 50);
    QCOMPARE(waitForAttempt(), 1200);
    QCOMPARE(waitForAttempt(), 50);
}

void TestQtSocketConnectionKeeper::lastingConnectionStartsWaitsAnew_data()
{
    QTest::addColumn<qint64>("lasted");
    QTest::addColumn<qint64>("nextWait");
    QTest::newRow("2 s") << qint64(2000) << qint64(1200);
    QTest::newRow("just short of 3 s") << qint64(2999) << qint64(1200);
    QTest::newRow("3 s") << qint64(3000) << qint64(300);
}

void TestQtSocketConnectionKeeper::lastingConnectionStartsWaitsAnew()
{
    QFETCH(const qint64, lasted);
    m_keeper->enable(true);
    QCOMPARE(waitForAttempt(), 300);
    m_socket->setFailing(false);
    QCOMPARE(waitForAttempt(), 600);
    connectFor(lasted);
    QTEST(waitForAttempt(), "nextWait");
}

void TestQtSocketConnectionKeeper::coarseTimerForLongWaits()
{
    m_keeper->setRetryInterval(1999, 2000);
    m_keeper->enable(true);
    m_clock->advance(0);
    QCOMPARE(m_clock->nextTimerType(), Qt::PreciseTimer);
    QCOMPARE(waitForAttempt(), 1999);
    m_clock->advance(0);
    QCOMPARE(m_clock->nextTimerType(), Qt::CoarseTimer);
}

void TestQtSocketConnectionKeeper::disabledWhileWaiting()
{
    m_keeper->enable(true);
    m_clock->advance(100);
    m_keeper->enable(false);
    m_socket->takeAttempts();
    m_clock->advance(10'000);
    QCOMPARE(m_socket->takeAttempts(), 0);
    m_keeper->enable(true);
    QCOMPARE(m_socket->takeAttempts(), 1);
    QCOMPARE(waitForAttempt(), 300);
}

void TestQtSocketConnectionKeeper::forceConnectStartsWaitsAnew()
{
    m_keeper->enable(true);
    for (const qint64 wait : {300, 600, 1200, 2400})
        QCOMPARE(waitForAttempt(), wait);
    m_clock->advance(1000);
    m_keeper->forceConnect();
    QCOMPARE(m_socket->takeAttempts(), 1);
    // The wait that was under way goes on; the one after it is short again.
    QCOMPARE(waitForAttempt(), 2000);
    QCOMPARE(waitForAttempt(), 300);
}

void TestQtSocketConnectionKeeper::connectsOnlyWhenItMay_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("server");
    QTest::addColumn<Socket::SocketState>("state");
    QTest::addColumn<bool>("ok");
    const QString server = QStringLiteral("server");
    QTest::newRow("ok") << true << server << Socket::UnconnectedState << true;
    QTest::newRow("disabled") << false << server << Socket::UnconnectedState << false;
    QTest::newRow("no address") << true << QString() << Socket::UnconnectedState << false;
    QTest::newRow("connecting") << true << server << Socket::ConnectingState << false;
    QTest::newRow("connected") << true << server << Socket::ConnectedState << false;
    QTest::newRow("closing") << true << server << Socket::ClosingState << false;
}

void TestQtSocketConnectionKeeper::connectsOnlyWhenItMay()
{
    QFETCH(const bool, enabled);
    QFETCH(const QString, server);
    QFETCH(const Socket::SocketState, state);
    QFETCH(const bool, ok);
    m_socket->setState(state);
    m_keeper->setServerAddress(QtAbstractServerAddress(server));
    m_keeper->enable(enabled);
    QCOMPARE(m_socket->takeAttempts(), int(ok));
    QCOMPARE(m_keeper->isOkToConnect(), ok);
    m_keeper->connect();
    m_keeper->forceConnect();
    QCOMPARE(m_socket->takeAttempts(), ok ? 2 : 0);
}

void TestQtSocketConnectionKeeper::proxyAuthErrorStopsAttempts()
{
    m_socket->setError(AbstractError(13, "QtAbstractSocketError", "", ""));
    m_keeper->enable(true);
    QCOMPARE(waitForAttempt(), -1);
    m_keeper->onGotProxyAuth();
    QCOMPARE(waitForAttempt(), 300);
    QCOMPARE(waitForAttempt(), -1);
    m_socket->setError(AbstractError(13, "QtLocalSocketError", "", ""));
    m_keeper->onGotProxyAuth();
    QCOMPARE(waitForAttempt(), -1);
}

QTEST_GUILESS_MAIN(TestQtSocketConnectionKeeper)
#include "tst_qtsocketconnectionkeeper.moc"
