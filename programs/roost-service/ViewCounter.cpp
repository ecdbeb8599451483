#include "programs/roost-service/ViewCounter.h"

#include "programs/roost-service/SeededHash.h"

#include <array>
#include <chrono>
#include <numeric>

namespace roost::local {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::milliseconds;

enum Purpose : std::uint64_t { ofDayNoise = 0x101, ofWeekMood = 0x102 };

/// Thousandths of a day's views in each of its hours (UTC).
constexpr std::array<std::int64_t, 24> hourly{12, 8,  6,  5,  6,  12, 24, 40, 52, 54, 50, 52,
                                              58, 54, 48, 46, 50, 60, 74, 86, 84, 64, 36, 19};
static_assert(std::accumulate(hourly.begin(), hourly.end(), std::int64_t{0}) == 1000);

/// In thousandths, from Sunday on.
constexpr std::array<std::int64_t, 7> byWeekday{1120, 900, 960, 1000, 1020, 980, 1150};

constexpr std::int64_t millisecondsPerHour = 3'600'000;

} // namespace

std::int64_t ViewCounter::ofDay(std::chrono::sys_days day) const
{
    const std::int64_t number = day.time_since_epoch().count();
    const std::int64_t week = floor<std::chrono::weeks>(day).time_since_epoch().count();
    const std::int64_t intoWeek = number - week * 7;
    const std::int64_t mood = (seededNumber(seed_, ofWeekMood, week, 800, 1250) * (7 - intoWeek) +
                               seededNumber(seed_, ofWeekMood, week + 1, 800, 1250) * intoWeek) /
                              7;
    const std::int64_t noise = seededNumber(seed_, ofDayNoise, number, 780, 1260);
    return perDay_ * noise / 1000 * byWeekday[std::chrono::weekday(day).c_encoding()] / 1000 * mood / 1000;
}

std::int64_t ViewCounter::ofDayUntil(Date until) const
{
    const auto day = floor<days>(until);
    const std::int64_t intoDay = (until - day).count();
    const auto hour = static_cast<std::size_t>(intoDay / millisecondsPerHour);
    const std::int64_t before =
        std::accumulate(hourly.begin(), hourly.begin() + static_cast<std::ptrdiff_t>(hour), std::int64_t{0});
    const std::int64_t share = before * millisecondsPerHour + hourly[hour] * (intoDay % millisecondsPerHour);
    return ofDay(day) * share / (1000 * millisecondsPerHour);
}

std::int64_t ViewCounter::between(Date from, Date to) const
{
    if (to <= from) {
        return 0;
    }
    std::int64_t views = ofDayUntil(to) - ofDayUntil(from);
    for (auto day = floor<days>(from); day < floor<days>(to); day += days(1)) {
        views += ofDay(day);
    }
    return views;
}

} // namespace roost::local
