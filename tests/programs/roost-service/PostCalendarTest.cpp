#include "programs/roost-service/PostCalendar.h"

#include <gtest/gtest.h>

#include <set>

namespace roost::local {
namespace {

using namespace std::chrono_literals;
using std::chrono::days;

constexpr Date start{std::chrono::sys_days{std::chrono::year{2025} / 3 / 14} + 5h + 17s};

PostCalendar calendarAt(std::int64_t scale)
{
    return {11, "shop", 9h, {"instagram", "x", "youtube"}, {start, scale}};
}

TEST(PostCalendar, GivesEachSlotOnceInOrder)
{
    for (const std::int64_t scale : {1, 60, 3600}) {
        const PostCalendar calendar = calendarAt(scale);
        const std::vector<PostSlot> all = calendar.slotsBetween(start - days(3), start + days(1));
        ASSERT_GT(all.size(), 6U);
        for (std::size_t i = 1; i < all.size(); ++i) {
            EXPECT_EQ(all[i].number, all[i - 1].number + 1);
            EXPECT_GE(all[i].at, all[i - 1].at);
        }
        std::vector<PostSlot> pieces;
        for (Date from = start - days(3); from < start + days(1); from += 4h) {
            const auto piece = calendar.slotsBetween(from, from + 4h);
            pieces.insert(pieces.end(), piece.begin(), piece.end());
        }
        EXPECT_EQ(pieces, all);
    }
}

TEST(PostCalendar, LeavesOutTheFirstMomentAndKeepsTheLast)
{
    const PostCalendar calendar = calendarAt(1);
    const PostSlot slot = calendar.slotsBetween(start, start + days(2)).front();
    EXPECT_TRUE(calendar.slotsBetween(slot.at, slot.at).empty());
    EXPECT_EQ(calendar.slotsBetween(slot.at - 1ms, slot.at), std::vector{slot});
}

TEST(PostCalendar, KeepsWhatIsPostedWhenItsTimeComes)
{
    const PostCalendar calendar = calendarAt(60);
    std::set<std::string> ids;
    for (const PostSlot& slot : calendar.slotsBetween(start, start + days(1))) {
        const CalendarPost post = calendar.post(slot);
        EXPECT_TRUE(ids.insert(post.id).second);
        EXPECT_EQ(calendar.post(slot).text, post.text);
        EXPECT_FALSE(post.networks.empty());
        EXPECT_EQ(std::set(post.networks.begin(), post.networks.end()).size(), post.networks.size());
    }
    EXPECT_TRUE(ids.begin()->starts_with("shop-"));
}

TEST(PostCalendar, FailsToPublishSomePosts)
{
    const PostCalendar calendar = calendarAt(1);
    const auto slots = calendar.slotsBetween(start, start + days(200));
    const auto failed = std::count_if(slots.begin(), slots.end(),
                                      [&](const PostSlot& slot) { return calendar.post(slot).fails; });
    EXPECT_GT(failed, 5);
    EXPECT_LT(failed, static_cast<std::ptrdiff_t>(slots.size() / 5));
}

TEST(PostCalendar, LetsTheViewsOfAPostRiseAndLevelOff)
{
    const PostCalendar calendar = calendarAt(1);
    for (const PostSlot& slot : calendar.slotsBetween(start, start + days(20))) {
        EXPECT_EQ(calendar.views(slot, 1000, slot.at - 1s), 0);
        std::int64_t before = 0;
        for (auto age = 0h; age < 24h * 30; age += 5h) {
            const std::int64_t views = calendar.views(slot, 1000, slot.at + age);
            EXPECT_GE(views, before);
            before = views;
        }
        EXPECT_GT(before, 0);
        EXPECT_LE(before, 2000);
    }
}

} // namespace
} // namespace roost::local
