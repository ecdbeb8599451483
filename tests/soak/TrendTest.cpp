#include "tests/soak/Trend.h"

#include <gtest/gtest.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;

TEST(Trend, TellsHowFastSomethingGrowsInAnHour)
{
    Trend trend;
    for (int minute = 0; minute < 30; ++minute) {
        // Two a minute, with a noise that evens out.
        trend.add(std::chrono::minutes{minute}, 100 + 2 * minute + (minute % 3 - 1) * (minute < 15 ? 4 : -4));
    }
    EXPECT_NEAR(trend.slopePerHour(), 120, 12);
}

TEST(Trend, HasNoSlopeWithoutTwoTimes)
{
    Trend trend;
    EXPECT_EQ(trend.slopePerHour(), 0);
    trend.add(1s, 5);
    trend.add(1s, 7);
    EXPECT_EQ(trend.slopePerHour(), 0);
    trend.add(3601s, 6);
    EXPECT_EQ(trend.slopePerHour(), 0);
    trend.add(3601s, 9);
    EXPECT_DOUBLE_EQ(trend.slopePerHour(), 1.5);
}

TEST(Trend, LeavesOutWhatComesAndGoes)
{
    Trend trend;
    Trend leaking;
    for (int i = 0; i < 30; ++i) {
        const int passing = i % 4 == 1 ? 3 * i : 0;
        trend.add(std::chrono::seconds{i}, 12 + passing);
        leaking.add(std::chrono::seconds{i}, 12 + passing + (i < 15 ? 0 : 1));
    }
    EXPECT_EQ(trend.growthOfLeast(), 0);
    EXPECT_EQ(leaking.growthOfLeast(), 1);
    EXPECT_EQ(Trend{}.growthOfLeast(), 0);
}

TEST(Trend, ForgetsTheBeginning)
{
    Trend trend;
    for (int i = 0; i < 10; ++i) {
        trend.add(std::chrono::seconds{i}, i < 5 ? 100 : 7);
    }
    const Trend later = trend.since(5s);
    EXPECT_EQ(later.size(), 5U);
    EXPECT_EQ(later.first(), 7);
    EXPECT_EQ(later.length(), 4s);
    EXPECT_EQ(later.slopePerHour(), 0);
    EXPECT_LT(trend.slopePerHour(), 0);
}

} // namespace
} // namespace roost::test
