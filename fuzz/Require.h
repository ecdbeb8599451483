#pragma once

#include <cstdio>
#include <cstdlib>

namespace roost::fuzz {

/// Ends the program, and so the run, when a law does not hold.
inline void require(bool holds, const char* law)
{
    if (!holds) {
        std::fprintf(stderr, "Broken law: %s\n", law);
        std::abort();
    }
}

} // namespace roost::fuzz
