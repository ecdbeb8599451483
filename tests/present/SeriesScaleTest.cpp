#include "present/SeriesScale.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <random>

namespace roost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto least = std::numeric_limits<std::int64_t>::min();
constexpr auto most = std::numeric_limits<std::int64_t>::max();

/// The bars of these values, their days named "0", "1", …
std::vector<RoostBar> bars(const std::vector<std::int64_t>& values, std::int64_t days = 7)
{
    std::vector<RoostSnapshot::Views::Day> series;
    for (const std::int64_t value : values) {
        series.push_back({std::to_string(series.size()), value});
    }
    return SeriesScale::bars(series, days);
}

TEST(SeriesScale, GivesNoBarsForNoDays)
{
    EXPECT_THAT(bars({}), IsEmpty());
    EXPECT_THAT(bars({1, 2, 3}, 0), IsEmpty());
    EXPECT_THAT(bars({1, 2, 3}, -1), IsEmpty());
    EXPECT_THAT(bars({1, 2, 3}, least), IsEmpty());
}

TEST(SeriesScale, MeasuresBarsAgainstTheTallestAndPrefersTheLatestOfEqualOnes)
{
    EXPECT_THAT(bars({5, 9, 9, 2}),
                ElementsAre(RoostBar{"0", 5, 5.0 / 9, false, false}, RoostBar{"1", 9, 1, false, false},
                            RoostBar{"2", 9, 1, false, true}, RoostBar{"3", 2, 2.0 / 9, true, false}));
}

TEST(SeriesScale, CallsTheLastBarTodayAlsoWhenItIsTheBest)
{
    EXPECT_THAT(bars({9, 9}),
                ElementsAre(RoostBar{"0", 9, 1, false, false}, RoostBar{"1", 9, 1, true, true}));
    EXPECT_THAT(bars({1}), ElementsAre(RoostBar{"0", 1, 1, true, true}));
}

TEST(SeriesScale, FindsNoBestBarAmongEmptyOnes)
{
    const auto empty = bars({0, 0, 0, 0, 0, 0, 0});
    ASSERT_EQ(empty.size(), 7U);
    for (const RoostBar& bar : empty) {
        EXPECT_EQ(bar.fraction, 0);
        EXPECT_FALSE(bar.isBest);
        EXPECT_EQ(bar.isToday, bar.day == "6");
    }
    EXPECT_THAT(bars({-3, -1}),
                ElementsAre(RoostBar{"0", -3, 0, false, false}, RoostBar{"1", -1, 0, true, false}));
}

TEST(SeriesScale, ShowsANegativeDayAsAnEmptyBarWithItsValue)
{
    EXPECT_THAT(bars({-5, 10, 0, least}),
                ElementsAre(RoostBar{"0", -5, 0, false, false}, RoostBar{"1", 10, 1, false, true},
                            RoostBar{"2", 0, 0, false, false}, RoostBar{"3", least, 0, true, false}));
}

TEST(SeriesScale, TakesTheTailOfALongSeries)
{
    EXPECT_THAT(bars({100, 1, 4, 2}, 3),
                ElementsAre(RoostBar{"1", 1, 0.25, false, false}, RoostBar{"2", 4, 1, false, true},
                            RoostBar{"3", 2, 0.5, true, false}));
    EXPECT_EQ(bars({1, 2}, most).size(), 2U);
}

TEST(SeriesScale, KeepsItsLawsForAnySeries)
{
    std::mt19937_64 random{62};
    for (int round = 0; round < 20'000; ++round) {
        std::vector<std::int64_t> values;
        for (std::uint64_t count = random() % 20; count > 0; --count) {
            const auto any = static_cast<std::int64_t>(random());
            values.push_back(random() % 2 == 0 ? any : any % 4);
        }
        const auto days = static_cast<std::int64_t>(random() % 25) - 2;
        const auto made = bars(values, days);
        const auto wanted = static_cast<std::size_t>(
            std::clamp(days, std::int64_t{0}, static_cast<std::int64_t>(values.size())));
        ASSERT_EQ(made.size(), wanted);
        std::int64_t tallest = 0;
        for (std::size_t i = 0; i < made.size(); ++i) {
            ASSERT_EQ(made[i].value, values[values.size() - made.size() + i]);
            ASSERT_TRUE(made[i].fraction >= 0 && made[i].fraction <= 1);
            ASSERT_EQ(made[i].fraction > 0, made[i].value > 0);
            ASSERT_EQ(made[i].isToday, i + 1 == made.size());
            tallest = std::max(tallest, made[i].value);
        }
        const auto best = std::ranges::find_if(made, &RoostBar::isBest);
        ASSERT_EQ(best != made.end(), tallest > 0);
        if (best != made.end()) {
            ASSERT_EQ(best->value, tallest);
            ASSERT_EQ(best->fraction, 1);
            ASSERT_TRUE(std::none_of(best + 1, made.end(), [&](const RoostBar& bar) {
                return bar.isBest || bar.value == tallest;
            }));
        }
    }
}

} // namespace
} // namespace roost
