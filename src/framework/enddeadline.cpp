#include "enddeadline.h"

#include <algorithm>

namespace {

std::atomic<EndDeadline *> processDeadline = nullptr;

EndDeadline::Milliseconds now()
{
    return std::chrono::duration_cast<EndDeadline::Milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace

EndDeadline::EndDeadline() { processDeadline = this; }

EndDeadline::~EndDeadline() { processDeadline = nullptr; }

void EndDeadline::begin()
{
    Milliseconds::rep notBegun = 0;
    if (EndDeadline *const deadline = processDeadline)
        deadline->m_begunAt.compare_exchange_strong(notBegun, now().count());
}

EndDeadline::Milliseconds EndDeadline::limited(Milliseconds wait, Milliseconds afterBeginning)
{
    const EndDeadline *const deadline = processDeadline;
    const Milliseconds begunAt{deadline ? deadline->m_begunAt.load() : 0};
    if (begunAt == Milliseconds::zero())
        return wait;
    return std::clamp(begunAt + afterBeginning - now(), Milliseconds::zero(), wait);
}
