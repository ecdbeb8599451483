#include "tests/soak/Trend.h"

#include <algorithm>
#include <limits>

namespace roost::test {

Trend Trend::since(Seconds begin) const
{
    Trend later;
    std::ranges::copy_if(points_, std::back_inserter(later.points_),
                         [begin](const Point& point) { return point.seconds >= begin.count(); });
    return later;
}

double Trend::slopePerHour() const
{
    double seconds = 0;
    double values = 0;
    for (const Point& point : points_) {
        seconds += point.seconds;
        values += point.value;
    }
    const auto count = static_cast<double>(points_.size());
    double together = 0;
    double apart = 0;
    for (const Point& point : points_) {
        const double since = point.seconds - seconds / count;
        together += since * (point.value - values / count);
        apart += since * since;
    }
    return apart > 0 ? together / apart * 3600 : 0;
}

double Trend::growthOfLeast() const
{
    if (isEmpty()) {
        return 0;
    }
    constexpr double none = std::numeric_limits<double>::infinity();
    const double third = (points_.back().seconds - points_.front().seconds) / 3;
    double before = none;
    double after = none;
    for (const Point& point : points_) {
        if (point.seconds <= points_.front().seconds + third) {
            before = std::min(before, point.value);
        }
        if (point.seconds >= points_.back().seconds - third) {
            after = std::min(after, point.value);
        }
    }
    return after - before;
}

} // namespace roost::test
