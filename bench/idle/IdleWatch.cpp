#include "bench/idle/IdleWatch.h"

#include <algorithm>
#include <numeric>

namespace roost::bench {

IdleWatch::IdleWatch(pid_t process)
    : process_(process),
      threads_(wakesOf(process).value_or(std::map<pid_t, ThreadWakes>{})),
      atFirst_(costOf(process).value_or(ProcessCost{}))
{
}

bool IdleWatch::look()
{
    const auto threads = wakesOf(process_);
    if (!threads) {
        return false;
    }
    for (const auto& [id, thread] : *threads) {
        const auto before = threads_.find(id);
        if (before == threads_.end()) {
            stirs_.push_back({seconds_, thread.name + " (new)", std::max<std::int64_t>(thread.wakes, 1)});
        } else if (thread.wakes > before->second.wakes) {
            stirs_.push_back({seconds_, thread.name, thread.wakes - before->second.wakes});
        }
    }
    for (const auto& [id, thread] : threads_) {
        if (!threads->contains(id)) {
            stirs_.push_back({seconds_, thread.name + " (ended)", 1});
        }
    }
    threads_ = *threads;
    ++seconds_;
    return true;
}

std::int64_t IdleWatch::wakes() const
{
    return std::accumulate(stirs_.begin(), stirs_.end(), std::int64_t{0},
                           [](std::int64_t sum, const Stir& stir) { return sum + stir.wakes; });
}

std::vector<IdleWatch::Stir> IdleWatch::stirsOutside(const std::vector<bool>& isBusy) const
{
    std::vector<Stir> outside;
    std::ranges::copy_if(stirs_, std::back_inserter(outside),
                         [&](const Stir& stir) { return !isBusy.at(stir.second); });
    return outside;
}

ProcessCost IdleWatch::cost() const
{
    ProcessCost cost = costOf(process_).value_or(ProcessCost{});
    cost.cpu -= atFirst_.cpu;
    return cost;
}

} // namespace roost::bench
