#pragma once

#include "tests/support/VirtualTime.h"

#include <cstdint>
#include <string>

namespace roost::test {

/// Keeps the first law that was broken in a simulation, and when.
class Judge {
public:
    Judge(std::uint64_t seed, VirtualTime& time) : seed_{seed}, begun_{time.bootTime()()}, time_{&time} {}

    /// `law` is broken: what was seen.
    void broken(const std::string& law, const std::string& seen)
    {
        if (finding_.empty()) {
            const std::chrono::milliseconds since = time_->bootTime()() - begun_;
            finding_ = "law \"" + law + "\" is broken with seed " + std::to_string(seed_) + " after " +
                       std::to_string(since.count()) + " ms: " + seen;
        }
    }

    void expect(bool holds, const char* law, const std::string& seen = {})
    {
        if (!holds) {
            broken(law, seen);
        }
    }

    bool hasFound() const { return !finding_.empty(); }
    const std::string& finding() const { return finding_; }

private:
    std::uint64_t seed_;
    std::chrono::milliseconds begun_;
    VirtualTime* time_;
    std::string finding_;
};

} // namespace roost::test
