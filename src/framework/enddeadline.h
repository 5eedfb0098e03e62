#pragma once

#include <QtGlobal>

#include <atomic>
#include <chrono>

/**
 * The one deadline that everything shares which the program waits for at its end.
 *
 * Browsers kill a host 2 seconds after they have closed its input. Each wait has a limit of its
 * own, but their sum would be too long: whoever waits asks limited() how long he may.
 *
 * main() makes the process's one. Without it, and before the end has begun, nothing is limited. Any
 * thread.
 */
class EndDeadline {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// After the beginning of the end. What is left of 2 seconds is for what needs no wait.
    static constexpr Milliseconds endWithin{1750};

    EndDeadline();
    ~EndDeadline();
    Q_DISABLE_COPY_MOVE(EndDeadline)

    /// The end has begun: the input has ended, or somebody asked for it. Only the first call
    /// counts.
    static void begin();
    /// So long, but not past the moment that is so long after the beginning of the end.
    static Milliseconds limited(Milliseconds wait, Milliseconds afterBeginning = endWithin);

private:
    /// On the steady clock; 0 before.
    std::atomic<Milliseconds::rep> m_begunAt = 0;
};
