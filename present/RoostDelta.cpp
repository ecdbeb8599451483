#include "present/RoostDelta.h"

#include "model/CheckedArithmetic.h"

#include <cmath>

namespace roost {

namespace {

/// `change` against `previous`, which a change can be measured against from 1 on.
std::optional<RoostDelta> measured(std::int64_t change, std::int64_t previous)
{
    constexpr double leastShown = 0.005;
    // Not "total / previous - 1", which loses the last digits: 1005 against 1000 would be flat.
    const double fraction = static_cast<double>(change) / static_cast<double>(previous);
    if (std::abs(fraction) < leastShown) {
        return RoostDelta{};
    }
    return RoostDelta{fraction > 0 ? RoostDelta::Direction::up : RoostDelta::Direction::down, fraction};
}

} // namespace

std::optional<RoostDelta> RoostDelta::of(const RoostSnapshot::Views& views)
{
    if (!views.total || !views.previous || *views.previous < 1) {
        return std::nullopt;
    }
    return measured(checkedDifference(*views.total, *views.previous), *views.previous);
}

std::optional<RoostDelta> RoostDelta::of(const RoostSnapshot::Followers& followers)
{
    std::int64_t gained = 0;
    for (const auto& network : followers.networks) {
        if (!network.delta7) {
            return std::nullopt;
        }
        gained = checkedSum(gained, *network.delta7);
    }
    if (followers.networks.empty()) {
        return std::nullopt;
    }
    const std::int64_t previous = checkedDifference(followers.total, gained);
    return previous < 1 ? std::nullopt : measured(gained, previous);
}

} // namespace roost
