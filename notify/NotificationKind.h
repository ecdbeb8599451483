#pragma once

#include "notify/RoostEvent.h"

#include <array>
#include <string_view>

namespace roost {

/// What a kind of event goes by outside.
struct NotificationKind {
    /// The setting that says whether its events are announced; a boolean, on unless the user switched it off.
    std::string_view switchKey;
    /// Groups its notifications, and stands for it in the log.
    std::string_view threadIdentifier;
};

/// In the order of `RoostEvent::Any`.
inline constexpr std::array<NotificationKind, std::variant_size_v<RoostEvent::Any>> notificationKinds{{
    {"notify.milestones", "milestones"},
    {"notify.bestPost", "bestPost"},
    {"notify.postWentOut", "postWentOut"},
    {"notify.postFailed", "postFailed"},
    {"notify.followers", "followers"},
}};

constexpr const NotificationKind& kindOf(const RoostEvent::Any& event)
{
    return notificationKinds[event.index()];
}

} // namespace roost
