#pragma once

#include "model/Date.h"

#include <cstdint>

namespace roost::local {

/// How fast the profiles live: up to `start` with the clock, from then on `scale` times as fast, so that a
/// trial of some minutes sees posts go out while all dates stay those of the clock. A plain value.
struct LifePace {
    Date start;
    /// From 1 to 3,600.
    std::int64_t scale = 1;

    /// The moment of the profiles' lives at `clock`. Rises with the clock.
    Date lived(Date clock) const { return clock <= start ? clock : start + (clock - start) * scale; }

    /// The first moment of the clock, in milliseconds, at which `life` has been reached.
    Date clock(Date life) const
    {
        if (life <= start) {
            return life;
        }
        const auto ahead = (life - start).count();
        return start + std::chrono::milliseconds((ahead + scale - 1) / scale);
    }
};

} // namespace roost::local
