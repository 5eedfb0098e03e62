// Keeping a client connected: the keeper's attempts, the launches of a missing server, and the
// helper that combines both. With a fake clock.

#include "fakeclock.h"
#include "qtabstractserverlauncher.h"
#include "qtabstractsocketvhipc.h"
#include "qtabstractvhipcclienthelper.h"
#include "qtautomaticserverlauncher.h"
#include "qtsocketconnectionkeeper.h"
#include "recordingpart.h"
#include "rows.h"

using Waits = QList<qint64>;

namespace {

/// A fake socket: attempts to connect fail at once, and tests set its state. Attempts are logged as
/// "A".
class FakeSocket : public QtAbstractSocket {
public:
    explicit FakeSocket(QStringList &log) : m_log(log) { }
    void connectToServer(const QtAbstractServerAddress &, QIODeviceBase::OpenMode) override
    {
        m_log += u"A"_qs;
        setState(ConnectingState);
        setState(UnconnectedState);
    }
    void disconnectFromHost() override { setState(UnconnectedState); }
    void abort() override { setState(UnconnectedState); }
    QIODevice *ioDevice() const override { return nullptr; }
    bool isConnected() const override { return m_connected; }
    SocketState state() const override { return m_state; }
    AbstractError error() const override
    {
        return AbstractError(m_errorCode, m_errorCategory, "test", "test");
    }
    void setError(int code, const char *category)
    {
        m_errorCode = code;
        m_errorCategory = category;
    }
    void setState(SocketState state)
    {
        m_state = state;
        Q_EMIT stateChanged(state);
        if (std::exchange(m_connected, state == ConnectedState) != (state == ConnectedState))
            Q_EMIT connectedStateChanged(m_connected);
    }

private:
    QStringList &m_log;
    SocketState m_state = UnconnectedState;
    bool m_connected = false;
    int m_errorCode = 0;
    const char *m_errorCategory = "QtAbstractSocketError";
};

/// Logs launches as "L"; the test decides when each ends.
class FakeServerLauncher : public QtAbstractServerLauncher {
public:
    explicit FakeServerLauncher(QStringList &log) : m_log(log) { }
    void launchServer() override { m_log += u"L"_qs; }

private:
    QStringList &m_log;
};

struct KeeperFixture {
    KeeperFixture() { keeper->setServerAddress(QtAbstractServerAddress(u"server"_qs)); }

    QStringList log;
    FakeClock clock;
    QSharedPointer<FakeSocket> socket = QSharedPointer<FakeSocket>::create(log);
    QSharedPointer<QtSocketConnectionKeeper> keeper =
        QSharedPointer<QtSocketConnectionKeeper>::create(socket, nullptr, clock);
    QSharedPointer<FakeServerLauncher> launcher = QSharedPointer<FakeServerLauncher>::create(log);
};

} // namespace

class TestClientHelpers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void keeperWaitsDouble_data()
    {
        const Rows<int, int, int, Waits> row("min", "max", "attemptsAtOnce", "waits");
        row("defaults", -1, -1, 1, {300, 600, 1200, 2400, 3000, 3000, 3000});
        row("min beyond max", 500, 100, 1, {300, 600, 1200});
        row("maximum not reached by doubling", 400, 1000, 1, {400, 800, 1000});
        row("maximum just beyond a doubled wait", 400, 801, 1, {400, 800, 801});
        row("the longest precise wait", 1999, 2000, 1, {1999, 2000});
        row("always the same", 500, 500, 1, {500, 500});
        row("from nothing: a tenth", 0, 3000, 2, {300, 600});
        row("from nothing to 1", 0, 0, 2, {1, 1});
        row("from nothing to 19", 0, 19, 2, {1, 2, 4, 8, 16, 19});
        row("from nothing to 10010", 0, 10010, 2, {1000, 2000});
        row("the longest", 2'000'000'000, std::numeric_limits<int>::max(), 1,
            {2'000'000'000, 2'147'483'647, 2'147'483'647});
    }

    void keeperWaitsDouble()
    {
        QFETCH(const int, min);
        QFETCH(const int, max);
        QFETCH(const int, attemptsAtOnce);
        QFETCH(const Waits, waits);
        KeeperFixture s;
        s.keeper->setRetryInterval(min, max);
        s.keeper->enable(true);
        qsizetype attempts = attemptsAtOnce;
        for (const qint64 wait : waits) {
            s.clock.advance(0);
            QCOMPARE(s.clock.nextTimerIn(), wait);
            QCOMPARE(s.clock.nextTimerType(), wait < 2000 ? Qt::PreciseTimer : Qt::CoarseTimer);
            QCOMPARE(s.log.size(), attempts++);
            s.clock.advance(wait);
        }
        // No attempts while it is disabled; when enabled again, it starts with a short delay.
        s.keeper->enable(false);
        s.clock.advance(std::numeric_limits<int>::max());
        QCOMPARE(s.log.size(), attempts);
        s.keeper->enable(true);
        QCOMPARE(s.log.size(), attempts + 1);
    }

    void keeperNeedsAnAddress()
    {
        const std::pair<QtAbstractServerAddress, bool> cases[] = {
            {QtAbstractServerAddress(QString()), false},
            {QtAbstractServerAddress(0), false},
            {QtAbstractServerAddress(7), true}};
        for (const auto &[address, attempted] : cases) {
            KeeperFixture s;
            s.keeper->setServerAddress(address);
            s.keeper->enable(true);
            QCOMPARE(s.log.size(), attempted ? 1 : 0);
        }
    }

    void longConnectionResetsTheWait()
    {
        for (const qint64 lasted : {2999, 3000}) {
            KeeperFixture s;
            s.keeper->enable(true);
            s.clock.advance(900);
            s.socket->setState(QtAbstractSocket::ConnectedState);
            s.clock.advance(lasted);
            s.socket->setState(QtAbstractSocket::UnconnectedState);
            s.clock.advance(0);
            QCOMPARE(s.clock.nextTimerIn(), lasted == 3000 ? 300 : 2400);
        }
    }

    void waitsForCredentialsOfTheProxy()
    {
        const std::tuple<int, const char *, bool> cases[] = {{13, "QtAbstractSocketError", true},
                                                             {12, "QtAbstractSocketError", false},
                                                             {13, "QtLocalSocketError", false}};
        for (const auto &[code, category, waits] : cases) {
            KeeperFixture s;
            s.socket->setError(code, category);
            s.keeper->enable(true);
            s.clock.advance(0);
            QCOMPARE(s.clock.nextTimerIn(), waits ? -1 : 300);
            s.keeper->onGotProxyAuth();
            QCOMPARE(s.clock.nextTimerIn(), 300);
            s.socket->setState(QtAbstractSocket::ConnectedState);
            s.clock.advance(300);
            s.keeper->onGotProxyAuth();
            QCOMPARE(s.clock.nextTimerIn(), -1);
        }
    }

    void launches_data()
    {
        // e, d: the automatic launcher is enabled, disabled; h, H: the helper.
        // r, n: the part requires the server, no longer. c, u: the socket is connected, is not.
        // k, x: the launch succeeds, fails. l: one more is requested. A number: seconds pass.
        // b: the clock is set back. ?: the seconds until the next launch are logged.
        const Rows<QString, QString> row("script", "expected");
        row("starts, whether it serves or not", u"e e k ? 3600"_qs, u"L -"_qs);
        row("fails at once", u"e x ? 179 ? 1"_qs, u"L 180 1 L"_qs);
        row("fails after 10 s", u"e 10 x ?"_qs, u"L 170"_qs);
        row("fails after 179 s", u"e 179 x ?"_qs, u"L 1"_qs);
        row("fails after 180 s", u"e 180 x ?"_qs, u"L L -"_qs);
        row("fails, the clock set back", u"e b x ?"_qs, u"L 180"_qs);
        row("runs for 14 s", u"e k 10 c 14 u ?"_qs, u"L 156"_qs);
        row("runs for 15 s, then for 5", u"e k 10 c 15 u k c 5 u ?"_qs, u"L L 175"_qs);
        row("runs, and cannot be launched again", u"e k c 20 u x ? 180"_qs, u"L L 180 L"_qs);
        row("connected", u"e x c ? l 400 u"_qs, u"L - L"_qs);
        row("enabled again while it launches", u"e d e k ?"_qs, u"L -"_qs);
        row("time for one while another is requested", u"e x l 400"_qs, u"L L"_qs);
        row("disabled", u"e x d ? c 20 u 400 e x ?"_qs, u"L - L 180"_qs);
        // The keeper tries at once, after 0.3 and after 0.9 s.
        row("on demand", u"h r 2 k n H 9 r h"_qs, u"A L A A A A L"_qs);
        row("a launch ends a long wait", u"h r 8 k 1"_qs, u"A L A A A A A A A A"_qs);
        row("demand that was there before", u"r h"_qs, u"A L"_qs);
        row("a failed launch is followed by no attempt", u"h r 2 x"_qs, u"A L A A"_qs);
        row("connected before it was launched", u"h r 2 c k"_qs, u"A L A A"_qs);
    }

    void launches()
    {
        QFETCH(const QString, script);
        KeeperFixture s;
        QtAutomaticServerLauncher automatic(s.launcher, nullptr, s.clock);
        connect(s.socket.get(), &QtAbstractSocket::connectedStateChanged, &automatic,
                &QtAutomaticServerLauncher::onConnectedStateChanged);
        const auto part = QSharedPointer<RecordingPart>::create();
        part->setRequiringServer(script.startsWith(u'r'));
        QtAbstractVhIpcClientHelper helper(
            s.socket, s.keeper, s.launcher,
            QSharedPointer<QtAbstractSocketVhIpc>::create(s.socket, part, 0, false), nullptr,
            s.clock);
        const QStringList steps = script.split(u' ');
        for (const QString &step : steps) {
            if (step == u"e" || step == u"d")
                automatic.enable(step == u"e");
            else if (step == u"h" || step == u"H")
                helper.enable(step == u"h");
            else if (step == u"r" || step == u"n")
                part->setRequiringServer(step == u"r");
            else if (step == u"c" || step == u"u")
                s.socket->setState(step == u"c" ? QtAbstractSocket::ConnectedState
                                                : QtAbstractSocket::UnconnectedState);
            else if (step == u"k" || step == u"x")
                Q_EMIT s.launcher->launchServerFinished(
                    AbstractError(step == u"k" ? 0 : 1, "GenericError", "test", "test"));
            else if (step == u"l")
                automatic.launchServer();
            else if (step == u"b")
                s.clock.setWallTime(1'000'000);
            else if (step == u"?")
                s.log += s.clock.nextTimerIn() < 0 ? u"-"_qs
                                                   : QString::number(s.clock.nextTimerIn() / 1000);
            else
                s.clock.advance(step.toLongLong() * 1000);
        }
        QTEST(s.log.join(u' '), "expected");
    }
};

QTEST_GUILESS_MAIN(TestClientHelpers)
#include "tst_clienthelpers.moc"
