#include "notify/NotificationPlanner.h"
#include "tests/notify/NaivePlan.h"
#include "tests/notify/PairCensus.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace roost {
namespace {

constexpr int rounds = 100'000;
constexpr NotificationPlanner planner{std::chrono::hours{3}};

AnnouncedLedger ledgerOf(const std::set<std::string>& keys)
{
    AnnouncedLedger ledger;
    ledger.mark({keys.begin(), keys.end()}, Date{});
    return ledger;
}

/// Whether it is a milestone or a new best post.
bool isOfTheBest(const PlannedEvent& planned) { return planned.event.index() < 2; }

TEST(NotificationPlannerByWords, PlansWhatTheRulesSay)
{
    test::SnapshotPairs pairs{41};
    test::PairCensus census;
    for (int round = 0; round < rounds; ++round) {
        const test::SnapshotPair pair = pairs.next();
        const RoostSnapshot* const before = pair.before ? &*pair.before : nullptr;
        ASSERT_EQ(planner.plan("p", pair.before, pair.now, ledgerOf(pair.known)),
                  test::naivePlan("p", before, pair.now, pair.known))
            << round;
        census.take(pair);
    }
    EXPECT_GT(census.counts().size(), 45U);
    for (const auto& [what, times] : census.counts()) {
        EXPECT_GE(times, rounds / 500) << what;
    }
}

TEST(NotificationPlannerByWords, AnnouncesNothingTwice)
{
    test::SnapshotPairs pairs{42};
    int announced = 0;
    for (int round = 0; round < rounds / 5; ++round) {
        const test::SnapshotPair pair = pairs.next();
        AnnouncedLedger ledger = ledgerOf(pair.known);
        const NotificationPlan first = planner.plan("p", pair.before, pair.now, ledger);
        ledger.mark(first.announcedKeys, pair.now.generatedAt);
        const NotificationPlan second = planner.plan("p", pair.before, pair.now, ledger);
        ASSERT_TRUE(second.events.empty()) << round;
        ASSERT_EQ(second.announcedKeys, first.announcedKeys) << round;
        announced += first.events.empty() ? 0 : 1;
    }
    EXPECT_GT(announced, rounds / 10);
}

TEST(NotificationPlannerByWords, RemembersTheKeyOfEverythingThatIsAnnounced)
{
    test::SnapshotPairs pairs{43};
    for (int round = 0; round < rounds / 5; ++round) {
        const test::SnapshotPair pair = pairs.next();
        const NotificationPlan plan = planner.plan("p", pair.before, pair.now, ledgerOf(pair.known));
        for (const PlannedEvent& planned : plan.events) {
            ASSERT_TRUE(std::ranges::count(plan.announcedKeys, planned.key) > 0) << planned.key;
            ASSERT_FALSE(pair.known.contains(planned.key)) << planned.key;
        }
        for (const std::string& key : plan.announcedKeys) {
            ASSERT_TRUE(key.starts_with("p|")) << key;
        }
    }
}

TEST(NotificationPlannerByWords, AnnouncesOneThingAboutTheBestPostAtMost)
{
    test::SnapshotPairs pairs{44};
    for (int round = 0; round < rounds / 5; ++round) {
        const test::SnapshotPair pair = pairs.next();
        const NotificationPlan plan = planner.plan("p", pair.before, pair.now, ledgerOf(pair.known));
        ASSERT_LE(std::ranges::count_if(plan.events, isOfTheBest), 1) << round;
        ASSERT_TRUE(std::ranges::is_partitioned(plan.events, isOfTheBest)) << round;
    }
}

TEST(NotificationPlannerByWords, HasNothingToSayOfTheBestPostThatWasThereAtTheSignIn)
{
    test::SnapshotPairs pairs{45};
    int plannedOtherwise = 0;
    for (int round = 0; round < rounds / 5; ++round) {
        // Signed in with these numbers, then other ones came, and then these once more.
        const RoostSnapshot now = pairs.snapshot();
        const std::optional other{pairs.snapshot()};
        AnnouncedLedger ledger;
        plannedOtherwise += static_cast<int>(
            std::ranges::count_if(planner.plan("p", other, now, ledger).events, isOfTheBest));
        ledger.mark(planner.plan("p", std::nullopt, now, ledger).announcedKeys, now.generatedAt);
        ASSERT_EQ(std::ranges::count_if(planner.plan("p", other, now, ledger).events, isOfTheBest), 0)
            << round;
    }
    EXPECT_GT(plannedOtherwise, rounds / 50);
}

} // namespace
} // namespace roost
