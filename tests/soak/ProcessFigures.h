#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>

namespace roost::test {

/// What a running process takes of the machine, as proc(5) has it. A plain value.
struct ProcessFigures {
    /// In KiB: its share of all memory that it uses, all of that, and what it alone has written to.
    long proportional = 0;
    long resident = 0;
    long privateDirty = 0;
    long descriptors = 0;
    long threads = 0;
    /// Spent in the program and for it in the system.
    std::chrono::milliseconds cpu{0};
};

/// Nothing when there is no such process, or none of this user.
std::optional<ProcessFigures> figuresOf(pid_t pid);

} // namespace roost::test
