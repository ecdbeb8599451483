#pragma once

#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/Scenario.h"

#include <functional>
#include <optional>

namespace roost::local {

/// The reply to a request whose ordinary answer is `ordinary`, as `scenario` bends it. `ordinary` is called
/// with the error of the service's clock, at most once, and not at all where the scenario answers in its
/// place.
Reply scenarioReply(const std::optional<Scenario>& scenario,
                    std::function<Answer(std::chrono::seconds clockOffset)> ordinary);

} // namespace roost::local
