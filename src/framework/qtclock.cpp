#include "qtclock.h"

#include "qtsingleshottimer.h"

#include <QElapsedTimer>
#include <QTimer>

namespace {

/// A timer of the event loop.
class SystemTimer : public QtSingleShotTimer {
public:
    SystemTimer()
    {
        m_timer.setSingleShot(true);
        connect(&m_timer, &QTimer::timeout, this, &QtSingleShotTimer::timeout);
    }

    void start(int msec, Qt::TimerType type) override
    {
        m_timer.setTimerType(type);
        m_timer.start(msec);
    }
    void stop() override { m_timer.stop(); }
    bool isActive() const override { return m_timer.isActive(); }

private:
    QTimer m_timer;
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
