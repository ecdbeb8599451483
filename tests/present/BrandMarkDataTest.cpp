#include "present/BrandMarkData.h"

#include "tests/present/PathElements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace {

using namespace roost;
using namespace roost::test;

TEST(BrandMarkData, HoldsElevenPlatforms)
{
    std::vector<std::string_view> platforms;
    std::ranges::transform(BrandMarkData::paths, std::back_inserter(platforms),
                           &BrandMarkData::Entry::platform);
    EXPECT_THAT(platforms, testing::UnorderedElementsAre("instagram", "tiktok", "tiktok_business", "youtube",
                                                         "x", "linkedin", "threads", "bluesky", "pinterest",
                                                         "facebook", "telegram"));
}

TEST(BrandMarkData, HasOneMarkForBothKindsOfTikTok)
{
    EXPECT_EQ(BrandMarkData::find("tiktok_business"), BrandMarkData::find("tiktok"));
}

TEST(BrandMarkData, HasADifferentMarkForEachOther)
{
    for (const auto& [platform, data] : BrandMarkData::paths) {
        EXPECT_EQ(std::ranges::count(BrandMarkData::paths, data, &BrandMarkData::Entry::data),
                  platform.starts_with("tiktok") ? 2 : 1)
            << platform;
    }
}

TEST(BrandMarkData, FindsPlatformsByTheirWholeNameInItsOwnCase)
{
    for (const auto& [platform, data] : BrandMarkData::paths) {
        EXPECT_EQ(BrandMarkData::find(platform), data);
    }
    for (const char* other : {"", "X", "YouTube", "mastodon", "tiktok ", "tik"}) {
        EXPECT_EQ(BrandMarkData::find(other), std::nullopt) << other;
    }
}

TEST(BrandMarkData, AreShortEnoughToKeepAndLongEnoughToBeDrawnWithCare)
{
    for (const auto& [platform, data] : BrandMarkData::paths) {
        EXPECT_THAT(data.size(), testing::AllOf(testing::Ge(190U), testing::Le(2000U))) << platform;
    }
}

TEST(BrandMarkData, AreReadToTheirEnd)
{
    for (const auto& [platform, data] : BrandMarkData::paths) {
        // A line behind the data is drawn only when all before it could be read.
        const VectorPath path = parsed(data);
        const VectorPath more = parsed(std::string{data} + "M777 777");
        EXPECT_EQ(more.size(), path.size() + 1) << platform;
        EXPECT_EQ(path.elements().back(), VectorPath::Element{Close{}}) << platform;
    }
}

TEST(BrandMarkData, StayInTheirBoxAndFillIt)
{
    for (const auto& [platform, data] : BrandMarkData::paths) {
        double least = 24;
        double most = 0;
        const auto take = [&](PathPoint p) {
            least = std::min({least, p.x, p.y});
            most = std::max({most, p.x, p.y});
        };
        parsed(data).visit([&](const auto& element) {
            if constexpr (requires { element.to; }) {
                take(element.to);
            }
        });
        EXPECT_THAT(least, testing::AllOf(testing::Ge(0), testing::Le(2.5))) << platform;
        EXPECT_THAT(most, testing::AllOf(testing::Le(24), testing::Ge(21.5))) << platform;
    }
}

} // namespace
