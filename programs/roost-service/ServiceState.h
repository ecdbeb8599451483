#pragma once

#include "model/Clock.h"
#include "programs/roost-service/Counters.h"
#include "programs/roost-service/LivingProfile.h"
#include "programs/roost-service/ScenarioBook.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace roost::local {

/// What the routes of the service share. Owned by the service, outlives the routes; main thread.
struct ServiceState {
    explicit ServiceState(Clock systemClock) : clock(std::move(systemClock)) {}

    Clock clock;
    /// How far the profiles' time runs ahead of the clock.
    std::chrono::seconds advanced{0};
    std::vector<LivingProfile> profiles;
    /// Bearer tokens that never expire, one per profile in the same order.
    std::vector<std::string> standingTokens;
    ScenarioBook scenarios;
    Counters counters;

    /// The time of the profiles.
    Date now() const { return clock() + advanced; }

    /// The profile with that id; null when there is none. Valid as long as this is.
    const LivingProfile* profile(const std::string& id) const
    {
        for (const LivingProfile& candidate : profiles) {
            if (candidate.id() == id) {
                return &candidate;
            }
        }
        return nullptr;
    }
};

} // namespace roost::local
