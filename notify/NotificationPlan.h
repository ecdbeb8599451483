#pragma once

#include "notify/RoostEvent.h"

#include <string>
#include <vector>

namespace roost {

/// An event to announce. A plain value.
struct PlannedEvent {
    RoostEvent::Any event;
    /// What the ledger knows it by: nothing is announced twice under one key.
    std::string key;

    bool operator==(const PlannedEvent&) const = default;
};

/// What is due after one refresh. A plain value.
struct NotificationPlan {
    /// In the order in which they are announced.
    std::vector<PlannedEvent> events;
    /// Every key that the ledger must remember, also of what was noticed and deliberately not announced. The
    /// keys of `events` are among them.
    std::vector<std::string> announcedKeys;

    bool operator==(const NotificationPlan&) const = default;
};

} // namespace roost
