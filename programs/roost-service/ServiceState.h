#pragma once

#include "model/Clock.h"
#include "programs/roost-service/AuthorizationServer.h"
#include "programs/roost-service/Consent.h"
#include "programs/roost-service/Counters.h"
#include "programs/roost-service/LivingProfile.h"
#include "programs/roost-service/OAuthFaults.h"
#include "programs/roost-service/ScenarioBook.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace roost::local {

/// What the routes of the service share. Owned by the service, outlives the routes; main thread.
struct ServiceState {
    /// `usual` are the consent and the lifetimes that hold until they are changed, and again after `reset`.
    ServiceState(Clock systemClock, RandomBytes random, Consent usual, Lifetimes usualLifetimes)
        : clock(systemClock),
          authorization(std::move(systemClock), std::move(random), usualLifetimes),
          consent(usual),
          usualConsent_(std::move(usual)),
          usualLifetimes_(usualLifetimes)
    {
    }

    Clock clock;
    /// How far the profiles' time runs ahead of the clock.
    std::chrono::seconds advanced{0};
    std::vector<LivingProfile> profiles;
    /// Bearer tokens that never expire, one per profile in the same order.
    std::vector<std::string> standingTokens;
    ScenarioBook scenarios;
    Counters counters;

    AuthorizationServer authorization;
    OAuthFaults faults;
    Consent consent;

    /// Back to the beginning with everything that can be switched, and with the counters. Clients and what
    /// was granted to them stay.
    void reset()
    {
        advanced = {};
        scenarios.clear();
        counters.clear();
        faults.clear();
        consent = usualConsent_;
        authorization.setLifetimes(usualLifetimes_);
    }

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

private:
    Consent usualConsent_;
    Lifetimes usualLifetimes_;
};

} // namespace roost::local
