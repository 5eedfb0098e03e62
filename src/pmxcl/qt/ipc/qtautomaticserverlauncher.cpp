#include "qtautomaticserverlauncher.h"

#include <algorithm>
#include <utility>

namespace {
/// Seconds between launches.
constexpr int launchSpacing = 180;
/// A connection that lasted so many seconds counts as a normal run of the server.
constexpr double normalRun = 15.0;
} // namespace

QtAutomaticServerLauncher::QtAutomaticServerLauncher(
    QSharedPointer<QtAbstractServerLauncher> launcher, QObject *parent, QtClock &clock)
    : QObject(parent), m_launcher(std::move(launcher)), m_clock(clock),
      m_launchTimer(clock.createTimer())
{
    connect(m_launchTimer.get(), &QtSingleShotTimer::timeout, this,
            &QtAutomaticServerLauncher::onTimeToLaunch);
    connect(m_launcher.data(), &QtAbstractServerLauncher::launchServerFinished, this,
            &QtAutomaticServerLauncher::onLaunchServerFinished);
}

void QtAutomaticServerLauncher::enable(bool enable)
{
    if (m_enabled == enable)
        return;
    m_enabled = enable;
    if (!enable) {
        cancelScheduleNextLaunchAttempt();
        return;
    }
    m_lastLaunchTime = 0;
    m_lastConnectedTime = 0;
    if (!m_connected)
        scheduleNextLaunchAttempt();
}

void QtAutomaticServerLauncher::launchServer()
{
    if (m_connected)
        return;
    m_lastLaunchTime = m_clock.wallTime();
    m_restartDue = false;
    m_launching = true;
    m_launcher->launchServer();
}

bool QtAutomaticServerLauncher::isLaunchScheduled() const { return m_launchTimer->isActive(); }

void QtAutomaticServerLauncher::scheduleNextLaunchAttempt()
{
    if (m_launching || isLaunchScheduled() || m_connected)
        return;
    // If the clock was set back, no time counts as passed.
    const double sinceLaunch = std::max(std::difftime(m_clock.wallTime(), m_lastLaunchTime), 0.0);
    if (m_lastLaunchTime == 0 || sinceLaunch >= launchSpacing || m_restartDue)
        launchServer();
    else
        m_launchTimer->start((launchSpacing - static_cast<int>(sinceLaunch)) * 1000);
}

void QtAutomaticServerLauncher::cancelScheduleNextLaunchAttempt() { m_launchTimer->stop(); }

void QtAutomaticServerLauncher::onConnectedStateChanged(bool connected)
{
    if (m_connected == connected)
        return;
    m_connected = connected;
    const std::time_t now = m_clock.wallTime();
    if (connected) {
        m_lastConnectedTime = now;
        cancelScheduleNextLaunchAttempt();
        return;
    }
    m_restartDue = m_lastConnectedTime != 0 && std::difftime(now, m_lastConnectedTime) >= normalRun;
    if (m_enabled)
        scheduleNextLaunchAttempt();
}

void QtAutomaticServerLauncher::onTimeToLaunch()
{
    cancelScheduleNextLaunchAttempt();
    if (m_enabled && !m_launching && !m_connected)
        launchServer();
}

void QtAutomaticServerLauncher::onLaunchServerFinished(const AbstractError &error)
{
    if (!m_launching)
        return;
    m_launching = false;
    if (error.isError() && m_enabled)
        scheduleNextLaunchAttempt();
    Q_EMIT launchServerFinished(error);
}
