#pragma once

#include <cstdint>
#include <string>

namespace roost {

/// One bar of a chart of days. A plain value; equality is member-wise.
struct RoostBar {
    /// As the snapshot names it.
    std::string day;
    std::int64_t value = 0;
    /// Its height, as a part of the tallest bar: 0 to 1, both included.
    double fraction = 0;
    /// The last bar, whatever its date.
    bool isToday = false;
    /// The latest of the tallest bars; no bar, when none has a height.
    bool isBest = false;

    bool operator==(const RoostBar&) const = default;
};

} // namespace roost
