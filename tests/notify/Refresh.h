#pragma once

#include "notify/NotificationPlanner.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace roost::test {

inline constexpr Date noon{std::chrono::sys_days{std::chrono::March / 1 / 2025} + std::chrono::hours{12}};
inline constexpr NotificationPlanner planner{std::chrono::seconds{10'800}};

inline RoostSnapshot::BestPost bestWith(std::int64_t views, const std::string& text = "Hello")
{
    return {"bluesky", "Bluesky", views, text, std::nullopt};
}

inline RoostSnapshot::Posts::Next item(const std::string& id, Date at)
{
    return {id, at, "Text of " + id, {"bluesky"}};
}

/// Two snapshots of one profile, an hour apart, that differ in nothing yet, and what is planned between them.
struct Refresh {
    std::optional<RoostSnapshot> previous = RoostSnapshot{};
    RoostSnapshot current;
    AnnouncedLedger ledger;

    Refresh()
    {
        previous->generatedAt = noon - std::chrono::hours{1};
        current.generatedAt = noon;
    }

    /// Posts that were in the queue before and are not any more.
    void vanish(std::vector<RoostSnapshot::Posts::Next> posts) { previous->posts.next = std::move(posts); }

    void followers(std::int64_t before, std::int64_t after)
    {
        previous->followers.emplace(RoostSnapshot::Followers{}).total = before;
        current.followers.emplace(RoostSnapshot::Followers{}).total = after;
    }

    NotificationPlan plan() const { return planner.plan("p1", previous, current, ledger); }

    std::vector<RoostEvent::Any> events() const
    {
        std::vector<RoostEvent::Any> all;
        for (const PlannedEvent& planned : plan().events) {
            all.push_back(planned.event);
        }
        return all;
    }

    std::vector<std::string> keys() const { return plan().announcedKeys; }
};

} // namespace roost::test
