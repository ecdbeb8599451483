#include "present/SeriesScale.h"

#include <algorithm>
#include <ranges>
#include <span>

namespace roost::SeriesScale {

namespace {

using Day = RoostSnapshot::Views::Day;

std::span<const Day> tail(const std::vector<Day>& series, std::int64_t days)
{
    const auto length = static_cast<std::int64_t>(series.size());
    const auto count = std::clamp(days, std::int64_t{0}, length);
    return std::span{series}.last(static_cast<std::size_t>(count));
}

} // namespace

std::vector<RoostBar> bars(const std::vector<Day>& series, std::int64_t days)
{
    const auto shown = tail(series, days);
    if (shown.empty()) {
        return {};
    }
    // From the end: of equal days the latest is the best.
    const auto best = std::ranges::max_element(shown | std::views::reverse, {}, &Day::views);
    const Day* const tallest = best->views < 1 ? nullptr : &*best;
    std::vector<RoostBar> made;
    made.reserve(shown.size());
    for (const Day& day : shown) {
        const double height =
            tallest == nullptr ? 0 : static_cast<double>(day.views) / static_cast<double>(tallest->views);
        made.push_back(
            {day.day, day.views, std::clamp(height, 0.0, 1.0), &day == &shown.back(), &day == tallest});
    }
    return made;
}

} // namespace roost::SeriesScale
