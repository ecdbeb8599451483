#include "programs/roost-service/LifePace.h"

#include <gtest/gtest.h>

namespace roost::local {
namespace {

using namespace std::chrono_literals;

constexpr Date start{1'700'000'000'123ms};

TEST(LifePace, FollowsTheClockUntilTheStart)
{
    const LifePace pace{start, 60};
    EXPECT_EQ(pace.lived(start), start);
    EXPECT_EQ(pace.lived(start - 1h), start - 1h);
    EXPECT_EQ(pace.clock(start - 1h), start - 1h);
}

TEST(LifePace, RunsAheadOfTheClockAfterTheStart)
{
    const LifePace pace{start, 60};
    EXPECT_EQ(pace.lived(start + 1min), start + 1h);
    EXPECT_EQ(pace.clock(start + 1h), start + 1min);
}

TEST(LifePace, TellsTheFirstMillisecondAtWhichAMomentHasBeenReached)
{
    const LifePace pace{start, 7};
    for (auto ahead = 1ms; ahead < 500ms; ++ahead) {
        const Date clock = pace.clock(start + ahead);
        EXPECT_GE(pace.lived(clock), start + ahead);
        EXPECT_LT(pace.lived(clock - 1ms), start + ahead);
    }
}

} // namespace
} // namespace roost::local
