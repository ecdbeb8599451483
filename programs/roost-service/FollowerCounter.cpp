#include "programs/roost-service/FollowerCounter.h"

#include "programs/roost-service/SeededHash.h"

#include <algorithm>
#include <chrono>

namespace roost::local {

namespace {

constexpr std::uint64_t ofDay = 0x301;
constexpr std::int64_t millisecondsPerDay = 86'400'000;

std::int64_t dayNumber(Date at)
{
    return std::chrono::floor<std::chrono::days>(at).time_since_epoch().count();
}

} // namespace

FollowerCounter::FollowerCounter(std::uint64_t seed, std::int64_t atStart, Date start)
    : seed_(seed),
      atStart_(atStart),
      startDay_(dayNumber(start)),
      perDay_(atStart / 400 + 1)
{
}

std::int64_t FollowerCounter::atDayStart(std::int64_t day) const
{
    // The unevenness is smaller than a day's gain, so that no day ends below where it began.
    const std::int64_t uneven = seededNumber(seed_, ofDay, day, 0, perDay_);
    return std::max<std::int64_t>(0, atStart_ + perDay_ * (day - startDay_) + uneven);
}

std::int64_t FollowerCounter::count(Date at) const
{
    const std::int64_t day = dayNumber(at);
    const std::int64_t before = atDayStart(day);
    const std::int64_t intoDay = at.time_since_epoch().count() - day * millisecondsPerDay;
    return before + (atDayStart(day + 1) - before) * intoDay / millisecondsPerDay;
}

} // namespace roost::local
