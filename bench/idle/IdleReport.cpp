#include "bench/idle/IdleReport.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>

namespace roost::bench {

namespace {

constexpr double memoryLimit = 1.5;

/// The file is written, its folder's events are looked at and connections are closed before and after the
/// request itself.
constexpr std::size_t aroundARefresh = 2;

std::vector<bool> secondsAround(const std::vector<int>& snapshots)
{
    std::vector<bool> around(snapshots.size());
    for (std::size_t i = 0; i < snapshots.size(); ++i) {
        const std::size_t first = i - std::min(i, aroundARefresh);
        const std::size_t last = std::min(i + aroundARefresh, snapshots.size() - 1);
        for (std::size_t j = first; j <= last; ++j) {
            around[j] = around[j] || snapshots[i] > 0;
        }
    }
    return around;
}

std::int64_t wakesIn(const std::vector<IdleWatch::Stir>& stirs)
{
    return std::accumulate(stirs.begin(), stirs.end(), std::int64_t{0},
                           [](std::int64_t sum, const IdleWatch::Stir& stir) { return sum + stir.wakes; });
}

std::string row(const char* name, double ours, double theirs, int decimals)
{
    std::array<char, 128> line{};
    std::snprintf(line.data(), line.size(), "%-48s %12.*f %12.*f\n", name, decimals, ours, decimals, theirs);
    return line.data();
}

double megabytes(std::int64_t kilobytes) { return static_cast<double>(kilobytes) / 1024; }

} // namespace

IdleReport::IdleReport(const IdleWatch& app, const IdleWatch& bare, std::vector<int> snapshots)
    : app_(app),
      bare_(bare),
      snapshots_(std::move(snapshots)),
      isRefreshing_(secondsAround(snapshots_)),
      appCost_(app.cost()),
      bareCost_(bare.cost()),
      appStirs_(app.stirsOutside(isRefreshing_)),
      bareStirs_(bare.stirsOutside(isRefreshing_))
{
}

bool IdleReport::isWithinLimits() const { return memoryRatio() <= memoryLimit && appStirs_.empty(); }

double IdleReport::memoryRatio() const
{
    return static_cast<double>(appCost_.proportionalKilobytes) /
           static_cast<double>(std::max<std::int64_t>(bareCost_.proportionalKilobytes, 1));
}

std::string IdleReport::text() const
{
    const double minutes = static_cast<double>(snapshots_.size()) / 60;
    const auto milliseconds = [](const ProcessCost& cost) {
        return std::chrono::duration<double, std::milli>{cost.cpu}.count();
    };
    std::array<char, 256> line{};
    std::snprintf(line.data(), line.size(), "%.0f minutes, in which %d snapshots were fetched\n\n%61s %12s\n",
                  minutes, std::accumulate(snapshots_.begin(), snapshots_.end(), 0), "the app",
                  "bare program");
    std::string text = line.data();
    text += row("proportional memory, MB", megabytes(appCost_.proportionalKilobytes),
                megabytes(bareCost_.proportionalKilobytes), 2);
    text += row("of it private and written to, MB", megabytes(appCost_.dirtyKilobytes),
                megabytes(bareCost_.dirtyKilobytes), 2);
    text += row("voluntary context switches a minute", static_cast<double>(app_.wakes()) / minutes,
                static_cast<double>(bare_.wakes()) / minutes, 1);
    text += row("of all, beyond the refreshes", static_cast<double>(wakesIn(appStirs_)),
                static_cast<double>(wakesIn(bareStirs_)), 0);
    text +=
        row("CPU time a minute, ms", milliseconds(appCost_) / minutes, milliseconds(bareCost_) / minutes, 2);
    text += row("threads", appCost_.threads, bareCost_.threads, 0);
    text += row("descriptors", appCost_.descriptors, bareCost_.descriptors, 0);
    std::snprintf(line.data(), line.size(),
                  "\nmemory of the app to that of the bare program: %.2f (limit: %.1f)\n", memoryRatio(),
                  memoryLimit);
    text += line.data();
    for (const IdleWatch::Stir& stir : appStirs_) {
        std::snprintf(line.data(), line.size(), "woke up beyond the refreshes: second %zu, %s, %lld times\n",
                      stir.second, stir.thread.c_str(), static_cast<long long>(stir.wakes));
        text += line.data();
    }
    return text;
}

} // namespace roost::bench
