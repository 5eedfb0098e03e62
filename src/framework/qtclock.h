#pragma once

#include <QtGlobal>
#include <ctime>
#include <memory>

class QtSingleShotTimer;

/**
 * The current time, and timers that run on it.
 *
 * Code that waits or compares times uses an injected clock: the system's, or a test's fake clock
 * (tests/support/fakeclock.h). A class takes it as its last constructor argument,
 * "QtClock &clock = QtClock::system()"; the clock must outlive the object.
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
    /// A timer of the calling thread, not started.
    virtual std::unique_ptr<QtSingleShotTimer> createTimer() = 0;
};
