#pragma once

#include "notify/NotificationPlan.h"

#include <set>
#include <string>

namespace roost::test {

/// The planner once more, slowly and by the letter: one rule after the other, nothing shared with it, nothing
/// clever. `before` is null when there is none; `known` are the keys of the ledger; a post counts as fresh
/// for three hours.
NotificationPlan naivePlan(const std::string& profile, const RoostSnapshot* before, const RoostSnapshot& now,
                           const std::set<std::string>& known);

} // namespace roost::test
