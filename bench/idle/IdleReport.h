#pragma once

#include "bench/idle/IdleWatch.h"

#include <string>
#include <vector>

namespace roost::bench {

/// What came of watching the app beside the bare program.
class IdleReport {
public:
    /// `snapshots`: how many the service was asked for in each second.
    IdleReport(const IdleWatch& app, const IdleWatch& bare, std::vector<int> snapshots);

    /// Whether the app takes at most 1.5 times the memory of the bare program and woke up for nothing but its
    /// refreshes.
    bool isWithinLimits() const;

    /// A table for people, and where the app woke up for nothing, when and in which thread.
    std::string text() const;

private:
    double memoryRatio() const;

    const IdleWatch& app_;
    const IdleWatch& bare_;
    std::vector<int> snapshots_;
    /// Of each second, whether a refresh is in it or close to it.
    std::vector<bool> isRefreshing_;
    ProcessCost appCost_;
    ProcessCost bareCost_;
    std::vector<IdleWatch::Stir> appStirs_;
    std::vector<IdleWatch::Stir> bareStirs_;
};

} // namespace roost::bench
