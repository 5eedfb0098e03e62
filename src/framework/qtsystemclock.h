#pragma once

#include "qtclock.h"

#include <QElapsedTimer>

/// The time of the system and timers of the event loop; see QtClock::system().
class QtSystemClock : public QtClock {
public:
    QtSystemClock();

    std::time_t wallTime() const override;
    qint64 monotonicMs() const override;
    std::unique_ptr<QtSingleShotTimer> createTimer() override;

private:
    QElapsedTimer m_sinceStart;
};
