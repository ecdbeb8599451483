#include "notify/NotificationPlanner.h"
#include "tests/notify/Refresh.h"

#include <gmock/gmock.h>

#include <limits>

namespace roost {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;
using test::item;
using test::noon;
using testing::ElementsAre;
using testing::IsEmpty;

/// What is planned of the posts of the queue.
class NotificationPlannerQueueTest : public testing::Test, protected test::Refresh {};

TEST_F(NotificationPlannerQueueTest, AnnouncesAPostThatLeftTheQueueAndWasDue)
{
    vanish({item("a", noon)});
    EXPECT_THAT(events(), ElementsAre(RoostEvent::PostWentOut{item("a", noon)}));
    EXPECT_THAT(keys(), ElementsAre("p1|sent:a"));
}

TEST_F(NotificationPlannerQueueTest, IgnoresAPostThatLeftTheQueueBeforeItWasDue)
{
    vanish({item("a", noon + milliseconds{1})});
    EXPECT_EQ(plan(), NotificationPlan{});
}

TEST_F(NotificationPlannerQueueTest, IgnoresAPostThatIsStillInTheQueue)
{
    vanish({item("a", noon - hours{1}), item("b", noon - hours{1})});
    current.posts.next = {item("b", noon + hours{5})};
    EXPECT_THAT(keys(), ElementsAre("p1|sent:a"));
}

TEST_F(NotificationPlannerQueueTest, TakesTheEarliestForTheFailedOnes)
{
    vanish({item("late", noon - seconds{1}), item("early", noon - seconds{2})});
    previous->posts.failed = 4;
    current.posts.failed = 5;
    EXPECT_THAT(events(), ElementsAre(RoostEvent::PostFailed{item("early", noon - seconds{2})},
                                      RoostEvent::PostWentOut{item("late", noon - seconds{1})}));
    EXPECT_THAT(keys(), ElementsAre("p1|failed:early", "p1|sent:late"));
}

TEST_F(NotificationPlannerQueueTest, LeavesPostsOfOneTimeInTheOrderOfTheQueue)
{
    vanish({item("b", noon), item("c", noon), item("a", noon), item("d", noon - seconds{1})});
    current.posts.failed = 2;
    EXPECT_THAT(keys(), ElementsAre("p1|failed:d", "p1|failed:b", "p1|sent:c", "p1|sent:a"));
}

TEST_F(NotificationPlannerQueueTest, LeavesManyPostsOfOneTimeInTheOrderOfTheQueue)
{
    std::vector<RoostSnapshot::Posts::Next> queue;
    std::vector<std::string> wanted;
    for (int i = 0; i < 200; ++i) {
        queue.push_back(item(std::to_string(i), noon));
        wanted.push_back("p1|sent:" + std::to_string(i));
    }
    vanish(queue);
    EXPECT_EQ(keys(), wanted);
}

TEST_F(NotificationPlannerQueueTest, AnnouncesFailuresThatNoPostExplainsOnce)
{
    vanish({item("a", noon)});
    previous->posts.failed = 4;
    current.posts.failed = 7;
    EXPECT_THAT(events(),
                ElementsAre(RoostEvent::PostFailed{item("a", noon)}, RoostEvent::PostFailed{std::nullopt}));
    EXPECT_THAT(keys(), ElementsAre("p1|failed:a", "p1|failed-count:7:2025-03-01T12:00:00.000Z"));
    ledger.entries = {{"p1|failed-count:7:2025-03-01T12:00:00.000Z", noon}};
    EXPECT_THAT(events(), ElementsAre(RoostEvent::PostFailed{item("a", noon)}));
}

TEST_F(NotificationPlannerQueueTest, PlansNothingMoreWhenEveryFailureIsExplained)
{
    vanish({item("a", noon)});
    current.posts.failed = 1;
    EXPECT_THAT(keys(), ElementsAre("p1|failed:a"));
}

TEST_F(NotificationPlannerQueueTest, TakesEveryPostForSentWhenTheFailuresFell)
{
    vanish({item("a", noon), item("b", noon)});
    previous->posts.failed = 4;
    current.posts.failed = 1;
    EXPECT_THAT(keys(), ElementsAre("p1|sent:a", "p1|sent:b"));
    EXPECT_EQ(events().size(), 2U);
}

TEST_F(NotificationPlannerQueueTest, RemembersAPostThatWasDueTooLongAgoWithoutAnnouncingIt)
{
    vanish({item("a", noon - hours{4})});
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(keys(), ElementsAre("p1|sent:a"));
    current.posts.failed = 1;
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(keys(), ElementsAre("p1|failed:a"));
}

TEST_F(NotificationPlannerQueueTest, AnnouncesAPostThatWasDueExactlyThreeHoursAgo)
{
    vanish({item("a", noon - seconds{10'800}), item("b", noon - seconds{10'800} - milliseconds{1})});
    EXPECT_THAT(events(), ElementsAre(RoostEvent::PostWentOut{item("a", noon - seconds{10'800})}));
    EXPECT_THAT(keys(), ElementsAre("p1|sent:b", "p1|sent:a"));
}

TEST_F(NotificationPlannerQueueTest, AnnouncesNoPostThatIsInTheLedger)
{
    vanish({item("a", noon), item("b", noon)});
    ledger.entries = {{"p1|sent:a", noon}, {"p2|sent:b", noon}, {"p1|failed:b", noon}};
    EXPECT_THAT(events(), ElementsAre(RoostEvent::PostWentOut{item("b", noon)}));
    EXPECT_THAT(keys(), ElementsAre("p1|sent:a", "p1|sent:b"));
}

using NotificationPlannerQueueDeathTest = NotificationPlannerQueueTest;

TEST_F(NotificationPlannerQueueDeathTest, EndsTheProgramWhenTheFailuresCannotBeSubtracted)
{
    previous->posts.failed = -2;
    current.posts.failed = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH(plan(), "integer overflow");
}

} // namespace
} // namespace roost
