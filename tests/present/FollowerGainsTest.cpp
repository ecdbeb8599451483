#include "present/FollowerGains.h"

#include "present/SeriesScale.h"

#include <gmock/gmock.h>

#include <limits>

namespace roost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Day = RoostSnapshot::Views::Day;

constexpr auto least = std::numeric_limits<std::int64_t>::min();
constexpr auto most = std::numeric_limits<std::int64_t>::max();

/// The gains of these totals, their days named "0", "1", …
std::vector<Day> gains(const std::vector<std::int64_t>& totals)
{
    std::vector<RoostSnapshot::Followers::Day> series;
    for (const std::int64_t total : totals) {
        series.push_back({std::to_string(series.size()), total});
    }
    return followerGains(series);
}

TEST(FollowerGains, CompareEachDayWithTheOneBefore)
{
    EXPECT_THAT(gains({100, 110, 110, 130}), ElementsAre(Day{"1", 10}, Day{"2", 0}, Day{"3", 20}));
}

TEST(FollowerGains, ShowALossAsAnEmptyBar)
{
    EXPECT_THAT(gains({110, 105, 130}), ElementsAre(Day{"1", 0}, Day{"2", 25}));
    EXPECT_THAT(gains({0, -5, least}), ElementsAre(Day{"1", 0}, Day{"2", 0}));
}

TEST(FollowerGains, NeedTwoDays)
{
    EXPECT_THAT(gains({}), IsEmpty());
    EXPECT_THAT(gains({5}), IsEmpty());
    EXPECT_THAT(SeriesScale::bars(gains({5}), 7), IsEmpty());
}

TEST(FollowerGains, AreMeasuredAgainstTheLargestOfThem)
{
    EXPECT_THAT(SeriesScale::bars(gains({50, 100, 110, 90, 130}), 3),
                ElementsAre(RoostBar{"2", 10, 0.25, false, false}, RoostBar{"3", 0, 0, false, false},
                            RoostBar{"4", 40, 1, true, true}));
}

TEST(FollowerGainsDeathTest, EndTheProgramOnTotalsThatCannotBeSubtracted)
{
    EXPECT_DEATH(gains({-1, 0, most, -2}), "integer overflow");
    EXPECT_DEATH(gains({1, least}), "integer overflow");
    EXPECT_THAT(gains({0, most}), ElementsAre(Day{"1", most}));
}

} // namespace
} // namespace roost
