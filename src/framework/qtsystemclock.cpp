#include "qtsystemclock.h"

#include "qtsingleshottimer.h"

#include <QTimer>

namespace {

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

} // namespace

QtSystemClock::QtSystemClock() { m_sinceStart.start(); }

std::time_t QtSystemClock::wallTime() const { return std::time(nullptr); }

qint64 QtSystemClock::monotonicMs() const { return m_sinceStart.elapsed(); }

std::unique_ptr<QtSingleShotTimer> QtSystemClock::createTimer()
{
    return std::make_unique<SystemTimer>();
}
