#pragma once

#include <QtGlobal>

#include <atomic>
#include <chrono>

/**
 * The deadline that all waits at the end of the program share.
 *
 * Browsers kill a host 2 seconds after they have closed its input. Each wait has a timeout of its
 * own, but their sum would be too long, so every wait at the end first limits its timeout with
 * limited().
 *
 * main() creates the only instance. Without it, and before the end has begun, nothing is limited.
 * Any thread.
 */
class EndDeadline {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// From the beginning of the end. The rest of the 2 seconds is for work that needs no wait.
    static constexpr Milliseconds endWithin{1750};

    EndDeadline();
    ~EndDeadline();
    Q_DISABLE_COPY_MOVE(EndDeadline)

    /// The end has begun: the input has ended, or a shutdown was requested. Only the first call
    /// counts.
    static void begin();
    /// So long, but not past the moment that is so long after the beginning of the end.
    static Milliseconds limited(Milliseconds wait, Milliseconds afterBeginning = endWithin);

private:
    /// On the steady clock; 0 before.
    std::atomic<Milliseconds::rep> m_begunAt = 0;
};
