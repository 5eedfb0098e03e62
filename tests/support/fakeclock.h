#pragma once

#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QCoreApplication>
#include <QList>

#include <algorithm>
#include <limits>

/**
 * A fake clock that a test advances.
 *
 * advance() fires the timers in the order in which they are due; each sees the time for which it
 * was set. Queued signals and calls are delivered before and after each of them.
 */
class FakeClock : public QtClock {
public:
    explicit FakeClock(std::time_t wallTime = 1'700'000'000) : m_wallStart(wallTime) { }

    std::time_t wallTime() const override { return m_wallStart + m_nowMs / 1000; }
    qint64 monotonicMs() const override { return m_nowMs; }
    std::unique_ptr<QtSingleShotTimer> createTimer() override
    {
        return std::make_unique<Timer>(*this);
    }

    void advance(qint64 msec)
    {
        const qint64 target = m_nowMs + msec;
        for (;;) {
            QCoreApplication::sendPostedEvents();
            Timer *next = nextTimer();
            if (!next || next->m_dueMs > target)
                break;
            m_nowMs = next->m_dueMs;
            next->fire();
        }
        m_nowMs = target;
    }
    /// Changes the calendar time, but not timers and the monotonic time.
    void setWallTime(std::time_t wallTime) { m_wallStart = wallTime - m_nowMs / 1000; }

    /// Milliseconds until the next timer is due, -1 when none is active.
    qint64 nextTimerIn() const
    {
        const Timer *next = nextTimer();
        return next ? next->m_dueMs - m_nowMs : -1;
    }
    /// The type of the next timer that is due; one must be active.
    Qt::TimerType nextTimerType() const { return nextTimer()->m_type; }

private:
    class Timer : public QtSingleShotTimer {
    public:
        explicit Timer(FakeClock &clock) : m_clock(clock) { m_clock.m_timers.append(this); }
        ~Timer() override { m_clock.m_timers.removeOne(this); }
        Q_DISABLE_COPY_MOVE(Timer)

        void start(int msec, Qt::TimerType type) override
        {
            m_dueMs = m_clock.m_nowMs + msec;
            m_type = type;
        }
        void stop() override { m_dueMs = Stopped; }
        bool isActive() const override { return m_dueMs != Stopped; }

        void fire()
        {
            stop();
            Q_EMIT timeout();
        }

        static constexpr qint64 Stopped = std::numeric_limits<qint64>::max();
        FakeClock &m_clock;
        qint64 m_dueMs = Stopped;
        Qt::TimerType m_type = Qt::CoarseTimer;
    };

    Timer *nextTimer() const
    {
        const auto next = std::min_element(
            m_timers.cbegin(), m_timers.cend(),
            [](const Timer *a, const Timer *b) { return a->m_dueMs < b->m_dueMs; });
        return next == m_timers.cend() || !(*next)->isActive() ? nullptr : *next;
    }

    std::time_t m_wallStart;
    qint64 m_nowMs = 0;
    QList<Timer *> m_timers;
};
