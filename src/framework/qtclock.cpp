#include "qtclock.h"

#include "qtsingleshottimer.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QTimerEvent>

namespace {

/// A timer of the event loop.
class SystemTimer : public QtSingleShotTimer {
public:
    void start(int msec, Qt::TimerType type) override { m_timer.start(msec, type, this); }
    void stop() override { m_timer.stop(); }
    bool isActive() const override { return m_timer.isActive(); }

protected:
    void timerEvent(QTimerEvent *event) override
    {
        if (event->timerId() != m_timer.timerId())
            return;
        m_timer.stop();
        Q_EMIT timeout();
    }

private:
    QBasicTimer m_timer;
};

class SystemClock : public QtClock {
public:
    SystemClock() { m_sinceStart.start(); }

    std::time_t wallTime() const override { return std::time(nullptr); }
    qint64 monotonicMs() const override { return m_sinceStart.elapsed(); }
    std::unique_ptr<QtSingleShotTimer> createTimer() override
    {
        return std::make_unique<SystemTimer>();
    }

private:
    QElapsedTimer m_sinceStart;
};

} // namespace

QtClock &QtClock::system()
{
    static SystemClock clock;
    return clock;
}

QtClock::~QtClock() = default;
