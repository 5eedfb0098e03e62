#pragma once

#include <QAbstractEventDispatcher>

#include <atomic>

/**
 * An event dispatcher for a thread that only handles queued signals and calls: no timers, no
 * sockets; requesting one is a failed check.
 *
 * Safe to terminate in the middle of an event; makes no system call between two events.
 */
class QueuedCallsDispatcher : public QAbstractEventDispatcher {
    Q_OBJECT
public:
    explicit QueuedCallsDispatcher(QObject *parent = nullptr);

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override;
    /// Any thread.
    void wakeUp() override;
    void interrupt() override;

    void registerSocketNotifier(QSocketNotifier *notifier) override;
    void unregisterSocketNotifier(QSocketNotifier *notifier) override;
    void registerTimer(int timerId, qint64 interval, Qt::TimerType timerType,
                       QObject *object) override;
    bool unregisterTimer(int timerId) override;
    bool unregisterTimers(QObject *object) override;
    QList<TimerInfo> registeredTimers(QObject *object) const override;
    int remainingTime(int timerId) override;

private:
    /// Whether there may be new events; an int, since threads can wait for it directly (futex).
    std::atomic<int> m_wokenUp = 1;
};
