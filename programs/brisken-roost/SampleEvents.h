#pragma once

#include "model/Date.h"
#include "model/RoostSnapshot.h"
#include "notify/NotificationPlan.h"

#include <string>
#include <string_view>
#include <vector>

/// Events as a profile has them, for trying notifications out: what the planner makes of a sample snapshot
/// and of one that came before it. Pure; any thread.
namespace roost::SampleEvents {

/// What `of` knows: a kind of event each, and last "all".
std::vector<std::string> kinds();

struct Sample {
    /// The snapshot that brought the events.
    RoostSnapshot snapshot;
    /// Those of the kind; for "all" one of each, in the order of `kinds`. Their keys depend on the kind alone
    /// or, where nobody knows which post failed, on `now`.
    std::vector<PlannedEvent> events;
};

/// The events of that kind at `now`; none for a kind that is not known.
Sample of(std::string_view kind, Date now);

} // namespace roost::SampleEvents
