#pragma once

#include <chrono>

namespace roost {

/// How old numbers are. A plain value. There is no age from which they count as stale: views show it, and
/// people judge.
struct RoostFreshness {
    /// Since they were fetched; never negative.
    std::chrono::duration<double> age{0};

    bool operator==(const RoostFreshness&) const = default;
};

} // namespace roost
