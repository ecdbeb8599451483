#pragma once

#include "model/RoostSnapshot.h"

#include <optional>

namespace roost {

/// How far a number moved against the period before. A plain value; equality is member-wise.
struct RoostDelta {
    enum class Direction { up, down, flat };

    Direction direction = Direction::flat;
    /// The change as a signed part of the earlier number, 0.25 for a quarter more; exactly 0 when `flat`.
    double fraction = 0;

    bool operator==(const RoostDelta&) const = default;

    /// The change of the views over the period before; nothing without both numbers, and when the earlier one
    /// is below 1. Less than half a percent is `flat`. Ends the program when the two differ by more than 64
    /// bits hold.
    static std::optional<RoostDelta> of(const RoostSnapshot::Views& views);

    /// The change of the followers over seven days, by the same rule; nothing when any network, or the lack
    /// of networks, leaves it unknown. Ends the program when what is known does not fit into 64 bits.
    static std::optional<RoostDelta> of(const RoostSnapshot::Followers& followers);
};

} // namespace roost
