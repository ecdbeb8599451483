#include "notify/NotificationPlanner.h"

#include "model/CheckedArithmetic.h"
#include "model/RoostJSON.h"

#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

namespace roost {

namespace {

using BestPost = RoostSnapshot::BestPost;
using Next = RoostSnapshot::Posts::Next;

constexpr std::array<std::int64_t, 3> thresholds{1'000, 10'000, 100'000};

std::string milestoneKey(const std::string& profileId, const BestPost& best, std::int64_t threshold)
{
    return profileId + "|milestone:" + best.key() + ":" + std::to_string(threshold);
}

std::string bestKey(const std::string& profileId, const BestPost& best)
{
    return profileId + "|best:" + best.key();
}

/// One run of the planner: its steps append to the plan in their order.
class Planning {
public:
    Planning(const NotificationPlanner& planner, const std::string& profileId, const RoostSnapshot& previous,
             const RoostSnapshot& current, const AnnouncedLedger& ledger)
        : planner_{planner},
          profileId_{profileId},
          previous_{previous},
          current_{current},
          ledger_{ledger}
    {
    }

    NotificationPlan run()
    {
        const bool announcedMilestone = planMilestone();
        planNewBest(announcedMilestone);
        planQueue();
        planFollowers();
        return std::move(plan_);
    }

private:
    /// Whether a milestone is announced. That the best post before may have been another one does not matter.
    bool planMilestone()
    {
        if (!current_.best) {
            return false;
        }
        const std::int64_t before = previous_.best ? previous_.best->views : 0;
        std::optional<std::int64_t> highest;
        for (const std::int64_t threshold : thresholds) {
            if (threshold > before && threshold <= current_.best->views) {
                remember(milestoneKey(profileId_, *current_.best, threshold));
                highest = threshold;
            }
        }
        if (!highest) {
            return false;
        }
        return announce(RoostEvent::Milestone{*highest, *current_.best},
                        milestoneKey(profileId_, *current_.best, *highest));
    }

    /// One notification about the best post is enough: with a milestone the new best is known, not announced.
    void planNewBest(bool announcedMilestone)
    {
        if (!previous_.best || !current_.best || previous_.best->views >= current_.best->views ||
            previous_.best->key() == current_.best->key()) {
            return;
        }
        const std::string key = bestKey(profileId_, *current_.best);
        remember(key);
        if (!announcedMilestone) {
            announce(RoostEvent::NewBest{*current_.best, previous_.best->views}, key);
        }
    }

    /// The posts of the queue before that are no longer in it and were due, earliest first; those of one time
    /// in the order of the queue.
    std::vector<const Next*> vanished() const
    {
        std::unordered_set<std::string> queued;
        for (const Next& post : current_.posts.next) {
            queued.insert(post.id);
        }
        std::vector<const Next*> gone;
        for (const Next& post : previous_.posts.next) {
            if (post.at <= current_.generatedAt && !queued.contains(post.id)) {
                gone.push_back(&post);
            }
        }
        std::ranges::sort(gone, {}, [](const Next* post) { return std::pair{post->at, post}; });
        return gone;
    }

    void planQueue()
    {
        const std::vector<const Next*> gone = vanished();
        const auto count = static_cast<std::int64_t>(gone.size());
        const std::int64_t rise = checkedDifference(current_.posts.failed, previous_.posts.failed);
        for (std::int64_t place = 0; const Next* post : gone) {
            const bool failed = place++ < rise;
            const std::string key = profileId_ + (failed ? "|failed:" : "|sent:") + post->id;
            remember(key);
            if (current_.generatedAt - post->at <= planner_.freshness) {
                announce(failed ? RoostEvent::Any{RoostEvent::PostFailed{*post}}
                                : RoostEvent::PostWentOut{*post},
                         key);
            }
        }
        if (rise > count) {
            const std::string key = profileId_ + "|failed-count:" + std::to_string(current_.posts.failed) +
                                    ":" + RoostJSON::formatDate(current_.generatedAt);
            remember(key);
            announce(RoostEvent::PostFailed{}, key);
        }
    }

    void planFollowers()
    {
        if (!previous_.followers || !current_.followers ||
            current_.followers->total <= previous_.followers->total) {
            return;
        }
        const std::int64_t total = current_.followers->total;
        const std::string key = profileId_ + "|followers:" + std::to_string(total);
        remember(key);
        announce(RoostEvent::NewFollowers{checkedDifference(total, previous_.followers->total), total}, key);
    }

    void remember(std::string key) { plan_.announcedKeys.push_back(std::move(key)); }

    /// Whether `event` is announced; not when that was done before.
    bool announce(RoostEvent::Any event, std::string key)
    {
        if (ledger_.entries.contains(key)) {
            return false;
        }
        plan_.events.push_back({std::move(event), std::move(key)});
        return true;
    }

    const NotificationPlanner& planner_;
    const std::string& profileId_;
    const RoostSnapshot& previous_;
    const RoostSnapshot& current_;
    const AnnouncedLedger& ledger_;
    NotificationPlan plan_;
};

} // namespace

NotificationPlan NotificationPlanner::plan(const std::string& profileId,
                                           const std::optional<RoostSnapshot>& previous,
                                           const RoostSnapshot& current, const AnnouncedLedger& ledger) const
{
    if (!previous) {
        return {{}, seed(profileId, current)};
    }
    return Planning{*this, profileId, *previous, current, ledger}.run();
}

std::vector<std::string> NotificationPlanner::seed(const std::string& profileId, const RoostSnapshot& current)
{
    if (!current.best) {
        return {};
    }
    std::vector<std::string> keys{bestKey(profileId, *current.best)};
    for (const std::int64_t threshold : thresholds) {
        if (threshold <= current.best->views) {
            keys.push_back(milestoneKey(profileId, *current.best, threshold));
        }
    }
    return keys;
}

} // namespace roost
