#include "present/RoostDelta.h"

#include "model/CheckedArithmetic.h"

#include <algorithm>
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
    using Network = RoostSnapshot::Followers::FollowerNetwork;
    const auto& networks = followers.networks;
    // Before anything is added up: what is unknown has no sum that could overflow.
    if (networks.empty() ||
        !std::ranges::all_of(networks, [](const Network& each) { return each.delta7.has_value(); })) {
        return std::nullopt;
    }
    std::int64_t gained = 0;
    for (const Network& network : networks) {
        gained = checkedSum(gained, *network.delta7);
    }
    const std::int64_t previous = checkedDifference(followers.total, gained);
    return previous < 1 ? std::nullopt : measured(gained, previous);
}

} // namespace roost
