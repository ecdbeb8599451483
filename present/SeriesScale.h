#pragma once

#include "model/RoostSnapshot.h"
#include "present/RoostBar.h"

#include <cstdint>
#include <vector>

/// From daily numbers to the bars of a chart. Pure; any thread.
namespace roost::SeriesScale {

/// The bars of the last `days` entries of `series`, of all when there are fewer. None for no days or less.
std::vector<RoostBar> bars(const std::vector<RoostSnapshot::Views::Day>& series, std::int64_t days);

} // namespace roost::SeriesScale
