#include "present/FollowerGains.h"

#include "model/CheckedArithmetic.h"

#include <algorithm>

namespace roost {

std::vector<RoostSnapshot::Views::Day> followerGains(const std::vector<RoostSnapshot::Followers::Day>& totals)
{
    std::vector<RoostSnapshot::Views::Day> gains;
    for (std::size_t later = 1; later < totals.size(); ++later) {
        const std::int64_t change = checkedDifference(totals[later].total, totals[later - 1].total);
        gains.push_back({totals[later].day, std::max(change, std::int64_t{0})});
    }
    return gains;
}

} // namespace roost
