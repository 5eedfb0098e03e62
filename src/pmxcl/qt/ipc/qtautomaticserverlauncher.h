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
 * Decides when the server is started: at once when it is enabled while the link is down, at once
 * when a link that was up for at least 15 seconds is lost, otherwise not before 180 seconds have
 * passed since the last launch. Times are calendar seconds. Belongs to one thread.
 */
class QtAutomaticServerLauncher : public QObject {
    Q_OBJECT
public:
    explicit QtAutomaticServerLauncher(QSharedPointer<QtAbstractServerLauncher> launcher,
                                       QObject *parent = nullptr,
                                       QtClock &clock = QtClock::system());

    void enable(bool enable);
    bool isEnabled() const { return m_enabled; }
    /// Nothing while connected.
    void launchServer();

    bool isLaunchScheduled() const;
    void scheduleNextLaunchAttempt();
    void cancelScheduleNextLaunchAttempt();

public Q_SLOTS:
    void onConnectedStateChanged(bool connected);

Q_SIGNALS:
    /// Failed or not, after what follows from it was set up.
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
    /// A connection that was a normal run was lost and no launch has answered that yet. Once only:
    /// a server that cannot be started any more must not be tried without a pause.
    bool m_restartDue = false;
    const std::unique_ptr<QtSingleShotTimer> m_launchTimer;
};
