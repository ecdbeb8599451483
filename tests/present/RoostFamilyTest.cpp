#include "present/RoostFamily.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace roost {
namespace {

TEST(RoostFamilyTest, HasANameForEachFamilyInOrder)
{
    std::vector<std::string> names;
    for (const RoostFamily family : allFamilies) {
        names.emplace_back(rawText(family));
        EXPECT_EQ(widgetFamily(rawText(family)), family);
    }
    EXPECT_THAT(names, testing::ElementsAre("small", "medium", "large", "extraLarge"));
}

TEST(RoostFamilyTest, KnowsNoOtherNames)
{
    for (const char* name : {"Small", "extralarge", "extra", "", "1"}) {
        EXPECT_EQ(widgetFamily(name), std::nullopt) << name;
    }
}

TEST(RoostFamilyTest, SetsDetailInThreeSizes)
{
    EXPECT_EQ(detailSize(RoostFamily::small), 11);
    EXPECT_EQ(detailSize(RoostFamily::medium), 12);
    EXPECT_EQ(detailSize(RoostFamily::large), 13);
    EXPECT_EQ(detailSize(RoostFamily::extraLarge), 13);
}

} // namespace
} // namespace roost
