#include "programs/brisken-roost/SampleEvents.h"

#include "notify/NotificationPlanner.h"
#include "present/SampleData.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace roost::SampleEvents {

namespace {

constexpr std::string_view every = "all";

/// Puts a post into the queue that was due a minute before the snapshot.
void queueAPost(RoostSnapshot& before)
{
    before.posts.next.insert(before.posts.next.begin(), {"rich-0",
                                                         before.generatedAt - std::chrono::minutes{1},
                                                         "Cinnamon & cardamom buns are back",
                                                         {"instagram"}});
}

struct Kind {
    std::string_view name;
    /// Makes the snapshot, in which nothing has changed yet, the one before the event.
    void (*rewind)(RoostSnapshot& before);
};

constexpr std::array<Kind, 6> table{{
    {"milestone", [](RoostSnapshot& before) { before.best->views = 9'870; }},
    {"newBest",
     [](RoostSnapshot& before) {
         before.best = {"instagram", "Instagram", 11'020, "Why our dough rests for two days", std::nullopt};
     }},
    {"postWentOut", queueAPost},
    {"postFailed",
     [](RoostSnapshot& before) {
         queueAPost(before);
         --before.posts.failed;
     }},
    {"postFailedUnknown", [](RoostSnapshot& before) { --before.posts.failed; }},
    {"newFollowers", [](RoostSnapshot& before) { before.followers->total -= 112; }},
}};

} // namespace

std::vector<std::string> kinds()
{
    std::vector<std::string> names;
    std::ranges::transform(table, std::back_inserter(names),
                           [](const Kind& kind) { return std::string{kind.name}; });
    names.emplace_back(every);
    return names;
}

Sample of(std::string_view kind, Date now)
{
    const NotificationPlanner planner{std::chrono::hours{3}};
    Sample sample{SampleData::rich(now), {}};
    for (const Kind& each : table) {
        if (kind == each.name || kind == every) {
            RoostSnapshot before = sample.snapshot;
            each.rewind(before);
            const NotificationPlan plan =
                planner.plan(sample.snapshot.profile.id, before, sample.snapshot, {});
            sample.events.insert(sample.events.end(), plan.events.begin(), plan.events.end());
        }
    }
    return sample;
}

} // namespace roost::SampleEvents
