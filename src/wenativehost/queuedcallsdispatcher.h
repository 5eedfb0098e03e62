#pragma once

#include <QAbstractEventDispatcher>

#include <atomic>

/**
 * The events of a thread in which nothing but queued signals and calls is to happen: no timers, no
 * sockets; asking for one is a failed check.
 *
 * Being cut off in the middle of an event does it no harm, and between two events it makes no
 * system call.
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
    /// Whether there may be something to do since the last look; an int is what a thread can wait
    /// for without a detour.
    std::atomic<int> m_wokenUp = 1;
};
