#include "notify/NotificationPlanner.h"

#include "tests/notify/Refresh.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/CommaLocale.h"
#include "tests/support/ScopedVariable.h"

#include <gmock/gmock.h>

#include <ctime>
#include <limits>

namespace roost {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using test::bestWith;
using test::item;
using test::noon;
using test::Refresh;
using testing::ElementsAre;
using testing::IsEmpty;

class NotificationPlannerTest : public testing::Test, protected Refresh {};

TEST_F(NotificationPlannerTest, PlansNothingWhenNothingChanged)
{
    current = *previous;
    current.best = previous->best = bestWith(150'000);
    current.posts.next = {item("a", noon), item("b", noon + hours{1})};
    previous->posts = current.posts;
    followers(10, 10);
    EXPECT_EQ(plan(), NotificationPlan{});
}

TEST_F(NotificationPlannerTest, OnlySeedsWithoutAPreviousSnapshot)
{
    current.best = bestWith(15'000);
    current.posts.next = {item("a", noon)};
    current.posts.failed = 3;
    current.followers.emplace(RoostSnapshot::Followers{}).total = 10;
    previous.reset();
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(keys(), ElementsAre("p1|best:bluesky|Hello", "p1|milestone:bluesky|Hello:1000",
                                    "p1|milestone:bluesky|Hello:10000"));
    EXPECT_EQ(keys(), NotificationPlanner::seed("p1", current));
}

TEST_F(NotificationPlannerTest, SeedsNoMilestoneThatIsNotPassed)
{
    const auto seeded = [this](std::int64_t views) {
        current.best = bestWith(views);
        return NotificationPlanner::seed("p1", current).size();
    };
    EXPECT_EQ(seeded(-5), 1U);
    EXPECT_EQ(seeded(999), 1U);
    EXPECT_EQ(seeded(1'000), 2U);
    EXPECT_EQ(seeded(9'999), 2U);
    EXPECT_EQ(seeded(10'000), 3U);
    EXPECT_EQ(seeded(99'999), 3U);
    EXPECT_EQ(seeded(100'000), 4U);
    EXPECT_EQ(seeded(std::numeric_limits<std::int64_t>::max()), 4U);
}

TEST_F(NotificationPlannerTest, SeedsNothingWithoutABestPost)
{
    current.posts.next = {item("a", noon)};
    current.followers.emplace(RoostSnapshot::Followers{}).total = 10;
    EXPECT_THAT(NotificationPlanner::seed("p1", current), IsEmpty());
    previous.reset();
    EXPECT_EQ(plan(), NotificationPlan{});
}

TEST_F(NotificationPlannerTest, KnowsABestPostByItsAddressAsReceived)
{
    current.best = bestWith(1);
    current.best->url = WebURL::parse("HTTPS://Example.COM/%7e?a=1");
    EXPECT_THAT(NotificationPlanner::seed("p|1", current),
                ElementsAre("p|1|best:HTTPS://Example.COM/%7e?a=1"));
}

TEST_F(NotificationPlannerTest, AnnouncesTheHighestMilestoneAndRemembersThoseBelow)
{
    previous->best = bestWith(900);
    current.best = bestWith(150'000, "Another");
    EXPECT_THAT(events(), ElementsAre(RoostEvent::Milestone{100'000, *current.best}));
    EXPECT_EQ(plan().events.at(0).key, "p1|milestone:bluesky|Another:100000");
    EXPECT_THAT(keys(), ElementsAre("p1|milestone:bluesky|Another:1000", "p1|milestone:bluesky|Another:10000",
                                    "p1|milestone:bluesky|Another:100000", "p1|best:bluesky|Another"));
}

TEST_F(NotificationPlannerTest, CrossesNoMilestoneThatWasReachedBefore)
{
    previous->best = current.best = bestWith(10'000);
    EXPECT_EQ(plan(), NotificationPlan{});
    current.best->views = 10'001;
    EXPECT_EQ(plan(), NotificationPlan{});
    current.best->views = 9'000;
    EXPECT_EQ(plan(), NotificationPlan{});
}

TEST_F(NotificationPlannerTest, CrossesAMilestoneByReachingItExactly)
{
    previous->best = bestWith(9'999);
    current.best = bestWith(10'000);
    EXPECT_THAT(events(), ElementsAre(RoostEvent::Milestone{10'000, *current.best}));
    EXPECT_THAT(keys(), ElementsAre("p1|milestone:bluesky|Hello:10000"));
}

TEST_F(NotificationPlannerTest, CountsFromNoViewsWhenThereWasNoBestPost)
{
    current.best = bestWith(1'500);
    EXPECT_THAT(events(), ElementsAre(RoostEvent::Milestone{1'000, *current.best}));
    EXPECT_THAT(keys(), ElementsAre("p1|milestone:bluesky|Hello:1000"));
}

TEST_F(NotificationPlannerTest, ComparesTheViewsOfTheBestPostsWhetherOrNotTheyAreOne)
{
    previous->best = bestWith(2'000, "One");
    current.best = bestWith(3'000, "Two");
    EXPECT_THAT(events(), ElementsAre(RoostEvent::NewBest{*current.best, 2'000}));
    EXPECT_THAT(keys(), ElementsAre("p1|best:bluesky|Two"));
}

TEST_F(NotificationPlannerTest, PlansNoMilestoneWhenTheBestPostIsGone)
{
    previous->best = bestWith(500);
    EXPECT_EQ(plan(), NotificationPlan{});
}

TEST_F(NotificationPlannerTest, AnnouncesNoMilestoneBelowOneThatIsInTheLedger)
{
    previous->best = bestWith(500);
    current.best = bestWith(20'000);
    ledger.entries = {{"p1|milestone:bluesky|Hello:10000", noon}};
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(keys(), ElementsAre("p1|milestone:bluesky|Hello:1000", "p1|milestone:bluesky|Hello:10000"));
    ledger.entries = {{"p1|milestone:bluesky|Hello:1000", noon}};
    EXPECT_THAT(events(), ElementsAre(RoostEvent::Milestone{10'000, *current.best}));
}

TEST_F(NotificationPlannerTest, AnnouncesANewBestPostNextToAMilestoneThatIsInTheLedger)
{
    previous->best = bestWith(500, "One");
    current.best = bestWith(1'500, "Two");
    ledger.entries = {{"p1|milestone:bluesky|Two:1000", noon}};
    EXPECT_THAT(events(), ElementsAre(RoostEvent::NewBest{*current.best, 500}));
    EXPECT_THAT(keys(), ElementsAre("p1|milestone:bluesky|Two:1000", "p1|best:bluesky|Two"));
}

TEST_F(NotificationPlannerTest, AnnouncesANewBestPostOnlyWithMoreViews)
{
    previous->best = bestWith(300, "One");
    for (const std::int64_t views : {299, 300}) {
        current.best = bestWith(views, "Two");
        EXPECT_EQ(plan(), NotificationPlan{});
    }
    current.best = bestWith(301, "Two");
    EXPECT_THAT(events(), ElementsAre(RoostEvent::NewBest{*current.best, 300}));
    ledger.mark(keys(), noon);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(keys(), ElementsAre("p1|best:bluesky|Two"));
}

TEST_F(NotificationPlannerTest, TellsBestPostsApartByTheirKeyAlone)
{
    previous->best = bestWith(300);
    current.best = bestWith(400);
    current.best->label = "Something else";
    EXPECT_EQ(plan(), NotificationPlan{});
    current.best->url = WebURL::parse("https://example.com/1");
    EXPECT_THAT(keys(), ElementsAre("p1|best:https://example.com/1"));
}

TEST_F(NotificationPlannerTest, AnnouncesEveryNewFollower)
{
    followers(1'200, 1'201);
    EXPECT_THAT(events(), ElementsAre(RoostEvent::NewFollowers{1, 1'201}));
    EXPECT_THAT(keys(), ElementsAre("p1|followers:1201"));
    ledger.mark(keys(), noon);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(keys(), ElementsAre("p1|followers:1201"));
}

TEST_F(NotificationPlannerTest, PlansNothingForFollowersWhoStayedOrLeft)
{
    followers(1'200, 1'200);
    EXPECT_EQ(plan(), NotificationPlan{});
    followers(1'200, 1'000);
    EXPECT_EQ(plan(), NotificationPlan{});
}

TEST_F(NotificationPlannerTest, PlansNothingForFollowersThatWereNotCountedTwice)
{
    followers(1, 2);
    previous->followers.reset();
    EXPECT_EQ(plan(), NotificationPlan{});
    followers(1, 2);
    current.followers.reset();
    EXPECT_EQ(plan(), NotificationPlan{});
}

/// A refresh in which everything happens.
Refresh eventful()
{
    Refresh all;
    all.previous->best = bestWith(500, "One");
    all.current.best = bestWith(1'500, "Two");
    all.vanish({item("a", noon - seconds{1}), item("b", noon)});
    all.current.posts.failed = 1;
    all.followers(5, 8);
    return all;
}

TEST_F(NotificationPlannerTest, AnnouncesInAnOrderOfItsOwn)
{
    static_cast<Refresh&>(*this) = eventful();
    EXPECT_THAT(events(),
                ElementsAre(RoostEvent::Milestone{1'000, *current.best},
                            RoostEvent::PostFailed{item("a", noon - seconds{1})},
                            RoostEvent::PostWentOut{item("b", noon)}, RoostEvent::NewFollowers{3, 8}));
    EXPECT_THAT(keys(), ElementsAre("p1|milestone:bluesky|Two:1000", "p1|best:bluesky|Two", "p1|failed:a",
                                    "p1|sent:b", "p1|followers:8"));
    current.posts.failed = 3;
    EXPECT_THAT(keys(),
                ElementsAre("p1|milestone:bluesky|Two:1000", "p1|best:bluesky|Two", "p1|failed:a",
                            "p1|failed:b", "p1|failed-count:3:2025-03-01T12:00:00.000Z", "p1|followers:8"));
}

TEST_F(NotificationPlannerTest, NamesTheSameKeysInEveryProcessWhereverThatRuns)
{
    static_cast<Refresh&>(*this) = eventful();
    current.posts.failed = 3;
    const test::CommaLocale comma;
    const test::ScopedVariable zone{"TZ", "Pacific/Apia"};
    const auto named = [this] {
        tzset();
        std::string all;
        for (const std::string& key : keys()) {
            all += key + "\n";
        }
        return all;
    };
    EXPECT_EQ(test::inChildProcess(named), "p1|milestone:bluesky|Two:1000\n"
                                           "p1|best:bluesky|Two\n"
                                           "p1|failed:a\n"
                                           "p1|failed:b\n"
                                           "p1|failed-count:3:2025-03-01T12:00:00.000Z\n"
                                           "p1|followers:8\n");
}

using NotificationPlannerDeathTest = NotificationPlannerTest;

TEST_F(NotificationPlannerDeathTest, EndsTheProgramWhenTheFollowersCannotBeSubtracted)
{
    followers(std::numeric_limits<std::int64_t>::min(), 0);
    EXPECT_DEATH(plan(), "integer overflow");
    followers(0, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(plan(), NotificationPlan{});
}

} // namespace
} // namespace roost
