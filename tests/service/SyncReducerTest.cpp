#include "service/SyncReducer.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace roost::test {

namespace {

using Outcomes = std::vector<SyncOutcome::Any>;
using Reason = SyncReason::Kind;
using SyncReducer::nextDelay;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

const SyncOutcome::Any updated = SyncOutcome::Updated{};
const SyncOutcome::Any signedOut = SyncOutcome::SignedOut{};
const SyncOutcome::Any unreachable = SyncOutcome::Failed{{Reason::unreachable, std::nullopt}};
const SyncOutcome::Any malformed = SyncOutcome::Failed{{Reason::malformed, std::nullopt}};

SyncOutcome::Any unavailable(std::optional<double> retryAfter)
{
    return SyncOutcome::Failed{{Reason::unavailable, retryAfter}};
}

} // namespace

TEST(SyncReducer, KeepsTheIntervalWhenNothingFailed)
{
    for (const std::int64_t failures : {least + 1, std::int64_t{0}, std::int64_t{3}, most}) {
        EXPECT_EQ(nextDelay(Outcomes{}, failures, 300), 300);
        EXPECT_EQ(nextDelay(Outcomes{updated, updated}, failures, 300), 300);
        EXPECT_EQ(nextDelay(Outcomes{signedOut, updated}, failures, 300), 300);
    }
}

TEST(SyncReducer, DoublesTheBackOffUpToTheInterval)
{
    for (const auto& [failures, delay] : {std::pair<std::int64_t, double>{least + 1, 60},
                                          {-1, 60},
                                          {0, 60},
                                          {1, 60},
                                          {2, 120},
                                          {3, 240},
                                          {4, 300},
                                          {5, 300},
                                          {2000, 300},
                                          {most, 300}}) {
        EXPECT_EQ(nextDelay(Outcomes{unreachable}, failures, 300), delay) << failures;
        EXPECT_EQ(nextDelay(Outcomes{updated, malformed, signedOut}, failures, 300), delay) << failures;
        EXPECT_EQ(nextDelay(Outcomes{unavailable({})}, failures, 300), delay) << failures;
    }
    EXPECT_EQ(nextDelay(Outcomes{unreachable}, 11, 1e9), 61440);
    EXPECT_EQ(nextDelay(Outcomes{unreachable}, most, infinity), infinity);
}

TEST(SyncReducer, NeverWaitsLongerThanTheInterval)
{
    EXPECT_EQ(nextDelay(Outcomes{unreachable}, 1, 30), 30);
    EXPECT_EQ(nextDelay(Outcomes{unavailable(45)}, 1, 30), 30);
}

TEST(SyncReducer, WaitsAsLongAsTheServiceAsksWithinBackOffAndInterval)
{
    for (const auto& [asked, delay] : {std::pair<double, double>{120, 120},
                                       {900, 300},
                                       {10, 60},
                                       {-5, 60},
                                       {300.5, 300},
                                       {60.25, 60.25},
                                       {infinity, 300},
                                       {-infinity, 60},
                                       {1e308, 300}}) {
        EXPECT_EQ(nextDelay(Outcomes{unavailable(asked)}, 1, 300), delay) << asked;
    }
    EXPECT_EQ(nextDelay(Outcomes{unavailable(120)}, 3, 300), 240);
}

TEST(SyncReducer, TakesARetryTimeThatIsNoNumberForNone)
{
    EXPECT_EQ(nextDelay(Outcomes{unavailable(notANumber)}, 1, 300), 60);
    EXPECT_EQ(nextDelay(Outcomes{unavailable(notANumber), unavailable(200)}, 2, 300), 120);
}

TEST(SyncReducer, TakesTheFirstRetryTimeThatThereIs)
{
    EXPECT_EQ(nextDelay(Outcomes{unavailable({}), unavailable(200)}, 1, 300), 200);
    EXPECT_EQ(nextDelay(Outcomes{unreachable, updated, unavailable(100), unavailable(200)}, 1, 300), 100);
    EXPECT_EQ(nextDelay(Outcomes{unavailable(200), unavailable(100)}, 1, 300), 200);
    EXPECT_EQ(nextDelay(Outcomes{unavailable(10), unavailable(200)}, 1, 300), 60);
}

TEST(SyncReducerDeathTest, StopsTheProgramForTheSmallestCount)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(nextDelay(Outcomes{unreachable}, least, 300), "count of failures");
    EXPECT_EQ(nextDelay(Outcomes{updated}, least, 300), 300);
}

} // namespace roost::test
