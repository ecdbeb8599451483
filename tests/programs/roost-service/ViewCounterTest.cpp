#include "programs/roost-service/ViewCounter.h"

#include <gtest/gtest.h>

#include <set>

namespace roost::local {
namespace {

using namespace std::chrono_literals;
using std::chrono::days;

constexpr Date noon{std::chrono::sys_days{std::chrono::year{2025} / 3 / 14} + 12h};

TEST(ViewCounter, AddsUpNeighbouringStretches)
{
    const ViewCounter counter(3, 24'000);
    for (auto step = 1h; step < 200h; step += 7h) {
        EXPECT_EQ(counter.between(noon, noon + step) + counter.between(noon + step, noon + 300h),
                  counter.between(noon, noon + 300h));
    }
}

TEST(ViewCounter, NeverCountsBackwards)
{
    const ViewCounter counter(3, 5'000);
    std::int64_t before = 0;
    for (auto passed = 0s; passed < 36h; passed += 97s) {
        const std::int64_t now = counter.between(noon, noon + passed);
        EXPECT_GE(now, before);
        before = now;
    }
    EXPECT_GT(before, 0);
    EXPECT_EQ(counter.between(noon, noon), 0);
    EXPECT_EQ(counter.between(noon, noon - 1h), 0);
}

TEST(ViewCounter, StaysNearWhatAUsualDayBrings)
{
    const ViewCounter counter(8, 10'000);
    std::set<std::int64_t> amounts;
    for (int day = 0; day < 400; ++day) {
        const std::int64_t amount = counter.between(noon + days(day), noon + days(day + 1));
        EXPECT_GT(amount, 4'500);
        EXPECT_LT(amount, 22'000);
        amounts.insert(amount);
    }
    EXPECT_GT(amounts.size(), 300U);
}

TEST(ViewCounter, IsTheSameForTheSameSeedAlone)
{
    EXPECT_EQ(ViewCounter(5, 900).between(noon, noon + 50h), ViewCounter(5, 900).between(noon, noon + 50h));
    EXPECT_NE(ViewCounter(5, 900).between(noon, noon + 50h), ViewCounter(6, 900).between(noon, noon + 50h));
}

TEST(ViewCounter, CountsNothingWhereThereIsNothing)
{
    EXPECT_EQ(ViewCounter(5, 0).between(noon, noon + 500h), 0);
}

} // namespace
} // namespace roost::local
