#pragma once

#include "model/RoostSnapshot.h"
#include "present/RoostBar.h"

#include <cstdint>
#include <vector>

/// From daily numbers to the bars of a chart. Pure; any thread.
namespace roost::SeriesScale {

/// The bars of the last `days` entries of `series`, of all when there are fewer. None for no days or less.
std::vector<RoostBar> bars(const std::vector<RoostSnapshot::Views::Day>& series, std::int64_t days);

/// What each day of `totals` but the first, which has none to compare with, gained over the day before it. A
/// loss counts as 0: it shows as an empty bar. Ends the program when two totals differ by more than 64 bits
/// hold.
std::vector<RoostSnapshot::Views::Day> dailyGains(const std::vector<RoostSnapshot::Followers::Day>& totals);

} // namespace roost::SeriesScale
