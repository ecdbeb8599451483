#pragma once

#include "service/RefreshLock.h"
#include "tests/support/ShuffledTurns.h"

#include <cstddef>
#include <set>
#include <string>

namespace roost::test {

/// A `RefreshLock` in memory whose callers suspend at least once.
class ScriptedRefreshLock final : public RefreshLock {
public:
    explicit ScriptedRefreshLock(ShuffledTurns& turns) : turns_(&turns) {}

    /// Nobody gets a lock from now on, who waits already among them.
    bool isBlocked = false;

    QCoro::Task<std::unique_ptr<Held>> acquire(std::string profileId, std::stop_token stop) override;

    bool isHeld(const std::string& profileId) const { return held_.contains(profileId); }
    /// How many wanted or had a lock at a time.
    std::size_t mostAskers() const { return mostAskers_; }

private:
    class HeldName;

    ShuffledTurns* turns_;
    std::set<std::string> held_;
    std::size_t askers_ = 0;
    std::size_t mostAskers_ = 0;
};

} // namespace roost::test
