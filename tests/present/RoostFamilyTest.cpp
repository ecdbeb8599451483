#include "present/RoostFamily.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace roost {
namespace {

TEST(RoostFamilyTest, HasANameForEachFamilyInOrder)
{
    std::vector<std::string> names;
    for (const RoostFamily each : allFamilies) {
        names.emplace_back(rawText(each));
        EXPECT_EQ(family(rawText(each)), each);
    }
    EXPECT_THAT(names, testing::ElementsAre("small", "medium", "large", "extraLarge"));
}

TEST(RoostFamilyTest, KnowsNoOtherNames)
{
    for (const char* name : {"Small", "extralarge", "extra", "", "1"}) {
        EXPECT_EQ(family(name), std::nullopt) << name;
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
