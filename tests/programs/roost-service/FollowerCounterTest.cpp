#include "programs/roost-service/FollowerCounter.h"

#include <gtest/gtest.h>

namespace roost::local {
namespace {

using namespace std::chrono_literals;
using std::chrono::days;

constexpr Date start{std::chrono::sys_days{std::chrono::year{2025} / 3 / 14} + 5h};

TEST(FollowerCounter, HasAboutWhatItWasGivenAtTheStart)
{
    const FollowerCounter counter(3, 12'000, start);
    EXPECT_GE(counter.count(start), 12'000);
    EXPECT_LE(counter.count(start), 12'100);
}

TEST(FollowerCounter, NeverLosesAnyone)
{
    const FollowerCounter counter(3, 900, start);
    std::int64_t before = counter.count(start - days(30));
    for (Date at = start - days(30); at < start + days(30); at += 31min) {
        EXPECT_GE(counter.count(at), before);
        before = counter.count(at);
    }
    EXPECT_GT(before, counter.count(start));
}

TEST(FollowerCounter, StopsAtNobodyFarInThePast)
{
    EXPECT_EQ(FollowerCounter(3, 1, start).count(start - days(5000)), 0);
}

} // namespace
} // namespace roost::local
