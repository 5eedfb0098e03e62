#pragma once

#include <cstdlib>

/// Ends the fuzz target when a property does not hold: a crash is what a fuzzer reports.
inline void require(bool ok)
{
    if (!ok)
        std::abort();
}
