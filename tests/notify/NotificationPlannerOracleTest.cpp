#include "model/RoostJSON.h"
#include "notify/NotificationPlanner.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <set>
#include <sstream>

namespace roost {
namespace {

constexpr int rounds = 100'000;
constexpr double freshness = 10'800;

/// Puts what it is given one after another.
template <class... Piece>
std::string joined(const Piece&... pieces)
{
    std::ostringstream text;
    (text << ... << pieces);
    return text.str();
}

std::string keyOfPost(const RoostSnapshot::BestPost& post)
{
    if (post.url.has_value()) {
        return post.url->text();
    }
    return joined(post.platform, "|", post.text);
}

/// The planner once more, slowly and by the letter: one rule after the other, nothing shared, nothing clever.
NotificationPlan naivePlan(const std::string& profile, const RoostSnapshot* before, const RoostSnapshot& now,
                           const std::set<std::string>& known)
{
    NotificationPlan plan;
    const auto isKnown = [&](const std::string& key) { return known.count(key) == 1; };
    if (before == nullptr) {
        if (now.best.has_value()) {
            plan.announcedKeys.push_back(joined(profile, "|best:", keyOfPost(*now.best)));
            if (now.best->views >= 1000) {
                plan.announcedKeys.push_back(joined(profile, "|milestone:", keyOfPost(*now.best), ":1000"));
            }
            if (now.best->views >= 10000) {
                plan.announcedKeys.push_back(joined(profile, "|milestone:", keyOfPost(*now.best), ":10000"));
            }
            if (now.best->views >= 100000) {
                plan.announcedKeys.push_back(joined(profile, "|milestone:", keyOfPost(*now.best), ":100000"));
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
                plan.announcedKeys.push_back(
                    joined(profile, "|milestone:", keyOfPost(*now.best), ":", threshold));
            }
            const std::string key = joined(profile, "|milestone:", keyOfPost(*now.best), ":", crossed.back());
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
            const std::string key = joined(profile, "|best:", keyOfPost(*now.best));
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
            const std::string key = joined(profile, "|failed:", post.id);
            plan.announcedKeys.push_back(key);
            if (age <= freshness && !isKnown(key)) {
                plan.events.push_back({RoostEvent::PostFailed{post}, key});
            }
        } else {
            const std::string key = joined(profile, "|sent:", post.id);
            plan.announcedKeys.push_back(key);
            if (age <= freshness && !isKnown(key)) {
                plan.events.push_back({RoostEvent::PostWentOut{post}, key});
            }
        }
    }

    if (rise > count) {
        const std::string key =
            joined(profile, "|failed-count:", now.posts.failed, ":", RoostJSON::formatDate(now.generatedAt));
        plan.announcedKeys.push_back(key);
        if (!isKnown(key)) {
            plan.events.push_back({RoostEvent::PostFailed{}, key});
        }
    }

    if (before->followers.has_value() && now.followers.has_value() &&
        now.followers->total > before->followers->total) {
        const std::string key = joined(profile, "|followers:", now.followers->total);
        plan.announcedKeys.push_back(key);
        if (!isKnown(key)) {
            plan.events.push_back({RoostEvent::NewFollowers{now.followers->total - before->followers->total,
                                                            now.followers->total},
                                   key});
        }
    }
    return plan;
}

/// Makes pairs of snapshots out of few ids, few times and few numbers, so that things meet: posts that stay,
/// vanish and come twice, thresholds hit exactly and missed by one, keys that the ledger has.
class Pairs {
public:
    explicit Pairs(std::uint64_t seed) : engine_{seed} {}

    std::uint64_t below(std::uint64_t bound) { return engine_() % bound; }

    template <class T, std::size_t count>
    T oneOf(const std::array<T, count>& all)
    {
        return all.at(below(count));
    }

    RoostSnapshot snapshot()
    {
        RoostSnapshot made;
        made.generatedAt = Date{std::chrono::seconds{1'740'830'400}} +
                           std::chrono::milliseconds{oneOf(std::array{-1, 0, 1, 86'399'999})};
        if (below(4) != 0) {
            made.best = best();
        }
        made.posts.failed = oneOf(std::array<std::int64_t, 8>{0, 0, 0, 1, 1, 2, 3, 7});
        for (std::uint64_t count = below(6); count > 0; --count) {
            made.posts.next.push_back(next());
        }
        if (below(4) != 0) {
            made.followers.emplace().total = oneOf(std::array<std::int64_t, 5>{-1, 0, 1, 1'204, 999'999});
        }
        return made;
    }

    /// Some of `keys`, and one that nobody asks for.
    std::set<std::string> someOf(const std::vector<std::string>& keys)
    {
        std::set<std::string> some{"p|sent:nobody"};
        for (const std::string& key : keys) {
            if (below(3) == 0) {
                some.insert(key);
            }
        }
        return some;
    }

private:
    RoostSnapshot::BestPost best()
    {
        RoostSnapshot::BestPost made;
        made.platform = oneOf(std::array{"bluesky", "x"});
        made.label = oneOf(std::array{"", "Label"});
        made.views = oneOf(std::array<std::int64_t, 16>{-1, 0, 1, 500, 999, 1'000, 1'001, 5'000, 9'999,
                                                        10'000, 10'001, 99'999, 100'000, 100'001, 150'000,
                                                        std::numeric_limits<std::int64_t>::max()});
        made.text = oneOf(std::array{"", "One", "Two"});
        if (below(3) == 0) {
            made.url = WebURL::parse(oneOf(std::array{"https://example.com/1", "https://EXAMPLE.com/1"}));
        }
        return made;
    }

    RoostSnapshot::Posts::Next next()
    {
        constexpr std::array<std::int64_t, 12> offsets{-86'400'000, -14'400'000, -10'800'002, -10'800'001,
                                                       -10'800'000, -10'799'999, -60'000,     -1,
                                                       0,           1,           60'000,      86'400'000};
        RoostSnapshot::Posts::Next made;
        made.id = oneOf(std::array{"a", "b", "c", "d", "e", "f"});
        made.at = Date{std::chrono::seconds{1'740'830'400}} + std::chrono::milliseconds{oneOf(offsets)};
        made.text = oneOf(std::array{"", "Text"});
        return made;
    }

    std::mt19937_64 engine_;
};

AnnouncedLedger ledgerOf(const std::set<std::string>& keys)
{
    AnnouncedLedger ledger;
    ledger.mark({keys.begin(), keys.end()}, Date{});
    return ledger;
}

constexpr NotificationPlanner planner{std::chrono::duration<double>{freshness}};

TEST(NotificationPlannerByWords, PlansWhatTheRulesSay)
{
    Pairs pairs{41};
    std::map<std::size_t, int> seen; // events by kind: what never happens is not tested
    int left = 0;
    for (int round = 0; round < rounds; ++round) {
        const RoostSnapshot now = pairs.snapshot();
        const auto before = pairs.below(20) == 0 ? std::nullopt : std::optional{pairs.snapshot()};
        const RoostSnapshot* const asPointer = before ? &*before : nullptr;
        const auto known = pairs.someOf(naivePlan("p", asPointer, now, {}).announcedKeys);
        const NotificationPlan wanted = naivePlan("p", asPointer, now, known);
        ASSERT_EQ(planner.plan("p", before, now, ledgerOf(known)), wanted) << round;
        for (const PlannedEvent& planned : wanted.events) {
            ++seen[planned.event.index()];
        }
        left += static_cast<int>(wanted.announcedKeys.size() - wanted.events.size());
    }
    for (std::size_t kind = 0; kind < std::variant_size_v<RoostEvent::Any>; ++kind) {
        EXPECT_GT(seen[kind], rounds / 100) << kind;
    }
    EXPECT_GT(left, rounds / 10);
}

TEST(NotificationPlannerByWords, AnnouncesNothingTwice)
{
    Pairs pairs{42};
    for (int round = 0; round < rounds / 10; ++round) {
        const std::optional before{pairs.snapshot()};
        const RoostSnapshot now = pairs.snapshot();
        AnnouncedLedger ledger;
        const NotificationPlan first = planner.plan("p", before, now, ledger);
        ledger.mark(first.announcedKeys, now.generatedAt);
        const NotificationPlan second = planner.plan("p", before, now, ledger);
        ASSERT_TRUE(second.events.empty()) << round;
        ASSERT_EQ(second.announcedKeys, first.announcedKeys) << round;
    }
}

TEST(NotificationPlannerByWords, RemembersTheKeyOfEverythingThatIsAnnounced)
{
    Pairs pairs{43};
    for (int round = 0; round < rounds / 10; ++round) {
        const std::optional before{pairs.snapshot()};
        const NotificationPlan plan = planner.plan("p", before, pairs.snapshot(), {});
        for (const PlannedEvent& planned : plan.events) {
            ASSERT_TRUE(std::ranges::count(plan.announcedKeys, planned.key) > 0) << planned.key;
            ASSERT_TRUE(planned.key.starts_with("p|")) << planned.key;
        }
    }
}

TEST(NotificationPlannerByWords, AnnouncesNothingTwiceAfterSigningInAgain)
{
    Pairs pairs{44};
    for (int round = 0; round < rounds / 10; ++round) {
        const RoostSnapshot now = pairs.snapshot();
        AnnouncedLedger ledger;
        ledger.mark(planner.plan("p", std::nullopt, now, ledger).announcedKeys, now.generatedAt);
        ASSERT_TRUE(planner.plan("p", now, now, ledger).events.empty()) << round;
    }
}

} // namespace
} // namespace roost
