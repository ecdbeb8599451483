#pragma once

#include <chrono>
#include <vector>

namespace roost::test {

/// One figure of a process over time. A plain value.
class Trend {
public:
    using Seconds = std::chrono::duration<double>;

    /// Times ascend.
    void add(Seconds at, double value) { points_.push_back({at.count(), value}); }

    bool isEmpty() const { return points_.empty(); }
    std::size_t size() const { return points_.size(); }
    double first() const { return points_.front().value; }
    double last() const { return points_.back().value; }
    /// From the first to the last.
    Seconds length() const
    {
        return Seconds{isEmpty() ? 0 : points_.back().seconds - points_.front().seconds};
    }

    /// What came at `begin` or after it.
    Trend since(Seconds begin) const;

    /// How fast it grows, by least squares; 0 for fewer than two times.
    double slopePerHour() const;

    /// How much more the least value of the last third is than that of the first third, in time: what stays
    /// of a growth when all that comes and goes is left out. 0 where a third is without a value.
    double growthOfLeast() const;

private:
    struct Point {
        double seconds;
        double value;
    };

    std::vector<Point> points_;
};

} // namespace roost::test
