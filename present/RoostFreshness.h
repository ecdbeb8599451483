#pragma once

#include <chrono>

namespace roost {

/// How old numbers are. A plain value. When they count as stale is nobody's business here: views show the
/// age.
struct RoostFreshness {
    /// Since they were fetched; never negative.
    std::chrono::duration<double> age{0};

    bool operator==(const RoostFreshness&) const = default;
};

} // namespace roost
