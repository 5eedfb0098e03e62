#pragma once

#include <QtGlobal>
#include <ctime>
#include <memory>

class QtSingleShotTimer;

/**
 * What time it is, and timers that follow that time.
 *
 * Whatever waits or compares times asks the clock that it was given: the system's one, unless a
 * test passes one that it turns by hand (tests/support/turnedclock.h). A class takes it as its last
 * constructor argument, "QtClock &clock = QtClock::system()", and the clock outlives the class.
 */
class QtClock {
public:
    /// The real time. Lives as long as the process.
    static QtClock &system();

    QtClock() = default;
    virtual ~QtClock();
    Q_DISABLE_COPY_MOVE(QtClock)

    /// Calendar time in seconds since the epoch, as time(2) gives it; the user may set it back.
    virtual std::time_t wallTime() const = 0;
    /// Milliseconds since an unspecified moment; never goes back.
    virtual qint64 monotonicMs() const = 0;
    /// A stopped timer of the calling thread.
    virtual std::unique_ptr<QtSingleShotTimer> createTimer() = 0;
};
