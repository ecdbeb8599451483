#include "app/Announcements.h"

#include "tests/app/AppWorld.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace roost::test {
namespace {

using namespace std::chrono_literals;

class AnnouncementsTest : public testing::Test, protected AppWorld {
protected:
    LogCatcher log;
};

TEST_F(AnnouncementsTest, TellsOneThingAfterAnother)
{
    signInBefore("p1");
    signInBefore("p2");
    start();
    roost.onRead = [](RoostSnapshot& numbers) {
        numbers.best->views = 1500;
        numbers.followers->total = 120;
    };
    time.advance(300s);

    ASSERT_EQ(center.added.size(), 4U);
    EXPECT_TRUE(center.added[1].identifier.starts_with("p1|"));
    EXPECT_TRUE(center.added[2].identifier.starts_with("p2|"));
    EXPECT_EQ(center.busiest, 1);
}

TEST_F(AnnouncementsTest, TellsWhatComesLaterAsWell)
{
    signInBefore("p1");
    start();
    roost.onRead = [](RoostSnapshot& numbers) { numbers.best->views *= 2; };
    time.advance(300s);
    EXPECT_EQ(center.added.size(), 1U);

    time.advance(4 * 300s);
    ASSERT_EQ(center.added.size(), 2U);
    EXPECT_TRUE(center.added[1].identifier.ends_with(":10000"));
}

TEST_F(AnnouncementsTest, LeavesTheRestOutWhenTheProgramQuits)
{
    signInBefore("p1");
    signInBefore("p2");
    start();
    roost.onRead = [](RoostSnapshot& numbers) {
        numbers.best->views = 1500;
        numbers.followers->total = 120;
    };
    std::optional<Pending<void>> ending;
    center.onRequest = [&] {
        if (!ending) {
            ending.emplace(app().quit());
        }
    };
    time.advance(300s);
    ASSERT_TRUE(ending);
    EXPECT_TRUE(ending->isDone());
    EXPECT_EQ(center.added.size(), 1U);

    quit();
    center.onRequest = [] {};
    start();
    time.advance(300s);
    // What the ledger knows counts as told; the other profile was not read before.
    EXPECT_EQ(std::ranges::count_if(
                  center.added, [](const auto& request) { return request.identifier.starts_with("p1|"); }),
              1);
    EXPECT_EQ(center.added.size(), 3U);
}

TEST_F(AnnouncementsTest, RemembersTheNewestSixHundred)
{
    AnnouncedLedger old;
    for (int i = 0; i < 700; ++i) {
        old.mark({"old " + std::to_string(i)}, time.now() - 1000s + std::chrono::seconds{i});
    }
    ASSERT_TRUE(ledgerStore.save(old));
    signInBefore("p1");
    start();

    EXPECT_EQ(ledger().entries.size(), 600U);
    EXPECT_TRUE(ledger().entries.contains("p1|best:x|the best"));
    EXPECT_FALSE(ledger().entries.contains("old 100"));
    EXPECT_TRUE(ledger().entries.contains("old 101"));
}

} // namespace
} // namespace roost::test
