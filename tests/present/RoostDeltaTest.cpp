#include "present/RoostDelta.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace roost {
namespace {

constexpr auto least = std::numeric_limits<std::int64_t>::min();
constexpr auto most = std::numeric_limits<std::int64_t>::max();
constexpr auto up = RoostDelta::Direction::up;
constexpr auto down = RoostDelta::Direction::down;
constexpr auto flat = RoostDelta::Direction::flat;

std::optional<RoostDelta> ofViews(std::optional<std::int64_t> total, std::optional<std::int64_t> previous)
{
    RoostSnapshot::Views views;
    views.total = total;
    views.previous = previous;
    return RoostDelta::of(views);
}

std::optional<RoostDelta> ofFollowers(std::int64_t total,
                                      const std::vector<std::optional<std::int64_t>>& deltas)
{
    RoostSnapshot::Followers followers;
    followers.total = total;
    for (const auto& delta : deltas) {
        followers.networks.push_back({"x", std::nullopt, 5, delta});
    }
    return RoostDelta::of(followers);
}

std::optional<RoostDelta> delta(RoostDelta::Direction direction, double fraction)
{
    return RoostDelta{direction, fraction};
}

TEST(ViewsDelta, IsASignedPartOfThePeriodBefore)
{
    EXPECT_EQ(ofViews(125, 100), delta(up, 0.25));
    EXPECT_EQ(ofViews(90, 100), delta(down, -0.1));
    EXPECT_EQ(ofViews(0, 10), delta(down, -1));
    EXPECT_EQ(ofViews(-10, 10), delta(down, -2));
    EXPECT_EQ(ofViews(3, 1), delta(up, 2));
    EXPECT_EQ(ofViews(4'800, 3'900), delta(up, 900.0 / 3'900.0));
}

TEST(ViewsDelta, IsFlatBelowHalfAPercent)
{
    EXPECT_EQ(ofViews(1'000, 1'000), delta(flat, 0));
    EXPECT_EQ(ofViews(1'004, 1'000), delta(flat, 0));
    EXPECT_EQ(ofViews(996, 1'000), delta(flat, 0));
    EXPECT_EQ(ofViews(1'005, 1'000), delta(up, 0.005));
    EXPECT_EQ(ofViews(995, 1'000), delta(down, -0.005));
    EXPECT_FALSE(std::signbit(ofViews(996, 1'000)->fraction));
}

TEST(ViewsDelta, NeedsBothNumbersAndAPeriodBeforeThatHadViews)
{
    EXPECT_EQ(ofViews(std::nullopt, 10), std::nullopt);
    EXPECT_EQ(ofViews(10, std::nullopt), std::nullopt);
    EXPECT_EQ(ofViews(10, 0), std::nullopt);
    EXPECT_EQ(ofViews(10, -1), std::nullopt);
    EXPECT_EQ(ofViews(least, least), std::nullopt);
    EXPECT_EQ(ofViews(most, 1), delta(up, static_cast<double>(most - 1)));
}

TEST(FollowersDelta, MeasuresWhatAllNetworksGainedAgainstWhatTheyHadBefore)
{
    EXPECT_EQ(ofFollowers(125, {25}), delta(up, 0.25));
    EXPECT_EQ(ofFollowers(125, {30, -5}), delta(up, 0.25));
    EXPECT_EQ(ofFollowers(90, {-20, 10}), delta(down, -0.1));
    EXPECT_EQ(ofFollowers(0, {-10}), delta(down, -1));
}

TEST(FollowersDelta, IsFlatBelowHalfAPercent)
{
    EXPECT_EQ(ofFollowers(1'004, {4}), delta(flat, 0));
    EXPECT_EQ(ofFollowers(1'005, {5}), delta(up, 0.005));
    EXPECT_EQ(ofFollowers(995, {-5}), delta(down, -0.005));
    EXPECT_EQ(ofFollowers(1'000, {0, 0}), delta(flat, 0));
}

TEST(FollowersDelta, NeedsTheChangeOfEveryNetwork)
{
    EXPECT_EQ(ofFollowers(100, {}), std::nullopt);
    EXPECT_EQ(ofFollowers(100, {std::nullopt}), std::nullopt);
    EXPECT_EQ(ofFollowers(100, {10, std::nullopt, 10}), std::nullopt);
    EXPECT_EQ(ofFollowers(100, {most, 1, std::nullopt}), std::nullopt);
    EXPECT_EQ(ofFollowers(least, {1, std::nullopt}), std::nullopt);
}

TEST(FollowersDelta, NeedsFollowersToStartFrom)
{
    EXPECT_EQ(ofFollowers(10, {10}), std::nullopt);
    EXPECT_EQ(ofFollowers(10, {11}), std::nullopt);
    EXPECT_EQ(ofFollowers(10, {9}), delta(up, 9));
}

TEST(RoostDeltaDeathTest, EndsTheProgramOnNumbersThatCannotBeAddedUp)
{
    EXPECT_DEATH(ofViews(least, 1), "integer overflow");
    EXPECT_DEATH(ofFollowers(0, {most, 1}), "integer overflow");
    EXPECT_DEATH(ofFollowers(0, {least, -1}), "integer overflow");
    EXPECT_DEATH(ofFollowers(0, {least}), "integer overflow");
    EXPECT_DEATH(ofFollowers(-2, {most}), "integer overflow");
}

} // namespace
} // namespace roost
