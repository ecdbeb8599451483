#include "tests/notify/NaivePlan.h"

#include "model/RoostJSON.h"

#include <cstdint>
#include <vector>

namespace roost::test {

namespace {

constexpr double freshness = 10'800;

std::string keyOfPost(const RoostSnapshot::BestPost& post)
{
    if (post.url.has_value()) {
        return post.url->text();
    }
    return post.platform + "|" + post.text;
}

} // namespace

NotificationPlan naivePlan(const std::string& profile, const RoostSnapshot* before, const RoostSnapshot& now,
                           const std::set<std::string>& known)
{
    NotificationPlan plan;
    const auto isKnown = [&](const std::string& key) { return known.count(key) == 1; };
    if (before == nullptr) {
        if (now.best.has_value()) {
            plan.announcedKeys.push_back(profile + "|best:" + keyOfPost(*now.best));
            if (now.best->views >= 1000) {
                plan.announcedKeys.push_back(profile + "|milestone:" + keyOfPost(*now.best) + ":1000");
            }
            if (now.best->views >= 10000) {
                plan.announcedKeys.push_back(profile + "|milestone:" + keyOfPost(*now.best) + ":10000");
            }
            if (now.best->views >= 100000) {
                plan.announcedKeys.push_back(profile + "|milestone:" + keyOfPost(*now.best) + ":100000");
            }
        }
        return plan;
    }

    bool milestoneAnnounced = false;
    if (now.best.has_value()) {
        const std::int64_t viewsBefore = before->best.has_value() ? before->best->views : 0;
        std::vector<std::int64_t> crossed;
        for (const std::int64_t threshold : std::vector<std::int64_t>{1000, 10000, 100000}) {
            if (threshold > viewsBefore && threshold <= now.best->views) {
                crossed.push_back(threshold);
            }
        }
        if (!crossed.empty()) {
            for (const std::int64_t threshold : crossed) {
                plan.announcedKeys.push_back(profile + "|milestone:" + keyOfPost(*now.best) + ":" +
                                             std::to_string(threshold));
            }
            const std::string key =
                profile + "|milestone:" + keyOfPost(*now.best) + ":" + std::to_string(crossed.back());
            if (!isKnown(key)) {
                plan.events.push_back({RoostEvent::Milestone{crossed.back(), *now.best}, key});
                milestoneAnnounced = true;
            }
        }
    }

    if (before->best.has_value() && now.best.has_value()) {
        const bool isAnother = keyOfPost(*before->best) != keyOfPost(*now.best);
        const bool isBetter = before->best->views < now.best->views;
        if (isAnother && isBetter) {
            const std::string key = profile + "|best:" + keyOfPost(*now.best);
            plan.announcedKeys.push_back(key);
            if (!isKnown(key) && !milestoneAnnounced) {
                plan.events.push_back({RoostEvent::NewBest{*now.best, before->best->views}, key});
            }
        }
    }

    std::vector<RoostSnapshot::Posts::Next> waiting;
    for (const auto& post : before->posts.next) {
        bool isQueued = false;
        for (const auto& other : now.posts.next) {
            isQueued = isQueued || other.id == post.id;
        }
        if (!isQueued && !(post.at > now.generatedAt)) {
            waiting.push_back(post);
        }
    }
    const auto count = static_cast<std::int64_t>(waiting.size());
    const std::int64_t rise = now.posts.failed - before->posts.failed;
    std::int64_t failures = rise;
    if (failures < 0) {
        failures = 0;
    }
    if (failures > count) {
        failures = count;
    }
    while (!waiting.empty()) {
        std::size_t earliest = 0;
        for (std::size_t i = 1; i < waiting.size(); ++i) {
            if (waiting[i].at < waiting[earliest].at) {
                earliest = i;
            }
        }
        const RoostSnapshot::Posts::Next post = waiting[earliest];
        waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(earliest));
        const double age = secondsSince1970(now.generatedAt) - secondsSince1970(post.at);
        if (failures > 0) {
            --failures;
            const std::string key = profile + "|failed:" + post.id;
            plan.announcedKeys.push_back(key);
            if (age <= freshness && !isKnown(key)) {
                plan.events.push_back({RoostEvent::PostFailed{post}, key});
            }
        } else {
            const std::string key = profile + "|sent:" + post.id;
            plan.announcedKeys.push_back(key);
            if (age <= freshness && !isKnown(key)) {
                plan.events.push_back({RoostEvent::PostWentOut{post}, key});
            }
        }
    }

    if (rise > count) {
        const std::string key = profile + "|failed-count:" + std::to_string(now.posts.failed) + ":" +
                                RoostJSON::formatDate(now.generatedAt);
        plan.announcedKeys.push_back(key);
        if (!isKnown(key)) {
            plan.events.push_back({RoostEvent::PostFailed{}, key});
        }
    }

    if (before->followers.has_value() && now.followers.has_value() &&
        now.followers->total > before->followers->total) {
        const std::string key = profile + "|followers:" + std::to_string(now.followers->total);
        plan.announcedKeys.push_back(key);
        if (!isKnown(key)) {
            plan.events.push_back({RoostEvent::NewFollowers{now.followers->total - before->followers->total,
                                                            now.followers->total},
                                   key});
        }
    }
    return plan;
}

} // namespace roost::test
