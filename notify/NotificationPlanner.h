#pragma once

#include "notify/AnnouncedLedger.h"
#include "notify/NotificationPlan.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace roost {

/// Decides after each successful refresh of one profile what is worth a notification. Pure; any thread.
struct NotificationPlanner {
    /// How long ago a post may have been due for "went out" and "failed" to be announced; one that was due
    /// exactly so long ago still is.
    std::chrono::duration<double> freshness;

    /// What is due when `current` has come after `previous`, which is absent right after signing in: then
    /// nothing is announced and the keys of `seed` are remembered. Events whose key `ledger` holds are left
    /// out; their keys are not. Posts that left the queue count by their time, those with equal times in the
    /// order of the queue. Ends the program when the failed or the follower numbers differ by more than 64
    /// bits hold.
    NotificationPlan plan(const std::string& profileId, const std::optional<RoostSnapshot>& previous,
                          const RoostSnapshot& current, const AnnouncedLedger& ledger) const;

    /// The keys of what already holds in `current`: its best post and the numbers of views which that has
    /// passed. The queue and the followers leave none, on purpose: their keys are of changes.
    static std::vector<std::string> seed(const std::string& profileId, const RoostSnapshot& current);
};

} // namespace roost
