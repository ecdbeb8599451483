#include "present/BrandMarkShape.h"

#include "tests/present/PathElements.h"

#include <gtest/gtest.h>

namespace {

using namespace roost;
using namespace roost::test;

class BrandMarkShapeTest : public testing::Test {
protected:
    VectorPath mark() { return *cache_.path("youtube"); }

    BrandMarkCache cache_;
    BrandMarkShape shape_{"youtube"};
};

TEST_F(BrandMarkShapeTest, FillsASquareWithTheWholeBox)
{
    EXPECT_EQ(shape_.path({0, 0, 24, 24}, cache_), mark());
    EXPECT_EQ(shape_.path({0, 0, 48, 48}, cache_), mark().placed(2, {0, 0}));
    EXPECT_EQ(shape_.path({5, 7, 12, 12}, cache_), mark().placed(0.5, {5, 7}));
}

TEST_F(BrandMarkShapeTest, StandsInTheMiddleOfTheLongerSide)
{
    EXPECT_EQ(shape_.path({0, 0, 100, 24}, cache_), mark().placed(1, {38, 0}));
    EXPECT_EQ(shape_.path({10, 20, 24, 100}, cache_), mark().placed(1, {10, 58}));
}

TEST_F(BrandMarkShapeTest, ShrinksToAPointWithItsRoom)
{
    EXPECT_EQ(shape_.path({3, 4, 0, 10}, cache_), mark().placed(0, {3, 9}));
}

TEST_F(BrandMarkShapeTest, IsEmptyForAPlatformWithoutAMark)
{
    EXPECT_TRUE(BrandMarkShape{"mastodon"}.path({0, 0, 24, 24}, cache_).isEmpty());
}

} // namespace
