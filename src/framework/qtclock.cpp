#include "qtclock.h"

#include "qtsystemclock.h"

QtClock &QtClock::system()
{
    static QtSystemClock clock;
    return clock;
}

QtClock::~QtClock() = default;
