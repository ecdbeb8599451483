#pragma once

#include "model/RoostSnapshot.h"

#include <vector>

namespace roost {

/// What each day of `totals` but the first, which has none to compare with, gained over the day before it:
/// the series whose bars show followers. A loss counts as 0 and shows as an empty bar. Ends the program when
/// two totals differ by more than 64 bits hold. Pure; any thread.
std::vector<RoostSnapshot::Views::Day>
followerGains(const std::vector<RoostSnapshot::Followers::Day>& totals);

} // namespace roost
