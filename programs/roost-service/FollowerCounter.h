#pragma once

#include "model/Date.h"

#include <cstdint>

namespace roost::local {

/// The followers of one profile on one network, as a function of time alone; they come at an uneven pace and
/// do not leave. A plain value; any thread.
class FollowerCounter {
public:
    /// About `atStart` followers on the day of `start`, from 1 to 1,000,000,000.
    FollowerCounter(std::uint64_t seed, std::int64_t atStart, Date start);

    /// Never below 0; never falls as `at` rises.
    std::int64_t count(Date at) const;

private:
    std::int64_t atDayStart(std::int64_t day) const;

    std::uint64_t seed_;
    std::int64_t atStart_;
    std::int64_t startDay_;
    std::int64_t perDay_;
};

} // namespace roost::local
