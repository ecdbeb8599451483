#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace roost::bench {

/// How often one thread has gone to sleep by itself, which is how often it has woken up.
struct ThreadWakes {
    std::string name;
    std::int64_t wakes = 0;
};

/// Since the start of the process, by thread. Nothing when there is no such process.
std::optional<std::map<pid_t, ThreadWakes>> wakesOf(pid_t process);

/// What a process takes up now, and what it has used since its start.
struct ProcessCost {
    /// Its pages, those that it shares with n others counted at 1/n.
    std::int64_t proportionalKilobytes = 0;
    /// What it shares with nobody and has written to.
    std::int64_t dirtyKilobytes = 0;
    std::chrono::nanoseconds cpu{0};
    int threads = 0;
    int descriptors = 0;
};

/// Nothing when there is no such process, or it is somebody else's.
std::optional<ProcessCost> costOf(pid_t process);

} // namespace roost::bench
