#pragma once

#include "abstracterror.h"
#include "qtabstractserverlauncher.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QObject>
#include <QSharedPointer>

#include <ctime>
#include <memory>

/**
 * Decides when to start the server: at once when it is enabled while the link is down, or when a
 * link that was up for at least 15 seconds is lost; otherwise not until 180 seconds after the last
 * launch. Times are calendar seconds. Belongs to one thread.
 */
class QtAutomaticServerLauncher : public QObject {
    Q_OBJECT
public:
    explicit QtAutomaticServerLauncher(QSharedPointer<QtAbstractServerLauncher> launcher,
                                       QObject *parent = nullptr,
                                       QtClock &clock = QtClock::system());

    void enable(bool enable);
    bool isEnabled() const { return m_enabled; }
    /// Does nothing while connected.
    void launchServer();

    bool isLaunchScheduled() const;
    void scheduleNextLaunchAttempt();
    void cancelScheduleNextLaunchAttempt();

public Q_SLOTS:
    void onConnectedStateChanged(bool connected);

Q_SIGNALS:
    /// Failed or not; emitted after the next launch was scheduled.
    void launchServerFinished(const AbstractError &error);

private Q_SLOTS:
    void onTimeToLaunch();
    void onLaunchServerFinished(const AbstractError &error);

private:
    const QSharedPointer<QtAbstractServerLauncher> m_launcher;
    QtClock &m_clock;
    bool m_enabled = false;
    bool m_launching = false;
    bool m_connected = false;
    std::time_t m_lastLaunchTime = 0;
    std::time_t m_lastConnectedTime = 0;
    /// A connection that counts as a normal run was lost, and there was no launch since. Allows one
    /// immediate launch only: a server that cannot be started must not be retried without a pause.
    bool m_restartDue = false;
    const std::unique_ptr<QtSingleShotTimer> m_launchTimer;
};
