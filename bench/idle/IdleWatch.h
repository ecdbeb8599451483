#pragma once

#include "bench/idle/ProcessCost.h"

#include <cstdint>
#include <string>
#include <vector>

namespace roost::bench {

/// Looks at one process once a second and keeps what each of its threads did in between.
class IdleWatch {
public:
    explicit IdleWatch(pid_t process);

    /// Ends a second. False when the process has gone.
    bool look();

    /// What one thread did in one second.
    struct Stir {
        std::size_t second;
        std::string thread;
        std::int64_t wakes;
    };

    /// Only threads that woke up, in order of time. A thread that has come is one of them, and one that has
    /// gone too, with at least one wake-up each.
    const std::vector<Stir>& stirs() const { return stirs_; }

    /// All wake-ups so far.
    std::int64_t wakes() const;

    /// Those in seconds of which `isBusy` is false.
    std::vector<Stir> stirsOutside(const std::vector<bool>& isBusy) const;

    /// What it cost from the first look to now: CPU time is of that time, the rest as it is now. Zeros when
    /// the process has gone.
    ProcessCost cost() const;

private:
    pid_t process_;
    std::map<pid_t, ThreadWakes> threads_;
    ProcessCost atFirst_;
    std::size_t seconds_ = 0;
    std::vector<Stir> stirs_;
};

} // namespace roost::bench
