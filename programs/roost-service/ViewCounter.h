#pragma once

#include "model/Date.h"

#include <cstdint>

namespace roost::local {

/// The views that one network counts for one profile, as a function of time alone: quiet nights and busy
/// evenings, weekends unlike weekdays, better and worse weeks. A plain value; any thread.
class ViewCounter {
public:
    /// About `perDay` views a day, from 0 to 10,000,000.
    ViewCounter(std::uint64_t seed, std::int64_t perDay) : seed_(seed), perDay_(perDay) {}

    /// The views from `from` to `to`, never negative; 0 when `to` is not after `from`. Neighbouring stretches
    /// add up: a to b and b to c give a to c. Takes time in proportion to the days between.
    std::int64_t between(Date from, Date to) const;

private:
    std::int64_t ofDay(std::chrono::sys_days day) const;
    std::int64_t ofDayUntil(Date until) const;

    std::uint64_t seed_;
    std::int64_t perDay_;
};

} // namespace roost::local
