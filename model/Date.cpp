#include "model/Date.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace roost {

std::string dayString(Date date)
{
    const std::chrono::year_month_day day{std::chrono::floor<std::chrono::days>(date)};
    std::array<char, 32> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", static_cast<int>(day.year()),
                                     static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
    return {text.data(), static_cast<std::size_t>(length)};
}

Date dateFromSeconds(double seconds)
{
    using Milliseconds = Date::duration;
    constexpr auto least = static_cast<double>(std::numeric_limits<Milliseconds::rep>::min());
    constexpr auto most = static_cast<double>(std::numeric_limits<Milliseconds::rep>::max());
    const double milliseconds = std::round(seconds * 1000.0);
    if (std::isnan(milliseconds) || milliseconds <= least) {
        return Date::min();
    }
    if (milliseconds >= most) {
        return Date::max();
    }
    return Date{Milliseconds{static_cast<Milliseconds::rep>(milliseconds)}};
}

double secondsSince1970(Date date) { return static_cast<double>(date.time_since_epoch().count()) / 1000.0; }

} // namespace roost
