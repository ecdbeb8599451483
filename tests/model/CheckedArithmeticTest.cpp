#include "model/CheckedArithmetic.h"

#include <gtest/gtest.h>

#include <limits>

namespace roost {
namespace {

constexpr auto least = std::numeric_limits<std::int64_t>::min();
constexpr auto most = std::numeric_limits<std::int64_t>::max();

TEST(CheckedArithmetic, GivesWhatFitsInto64Bits)
{
    EXPECT_EQ(checkedSum(2, 3), 5);
    EXPECT_EQ(checkedSum(most, 0), most);
    EXPECT_EQ(checkedSum(most, least), -1);
    EXPECT_EQ(checkedSum(most - 1, 1), most);
    EXPECT_EQ(checkedSum(least + 1, -1), least);
    EXPECT_EQ(checkedDifference(2, 3), -1);
    EXPECT_EQ(checkedDifference(-1, most), least);
    EXPECT_EQ(checkedDifference(-1, least), most);
    EXPECT_EQ(checkedDifference(least, least), 0);
}

TEST(CheckedArithmeticDeathTest, EndsTheProgramOnASumThatDoesNotFit)
{
    EXPECT_DEATH(checkedSum(most, 1), "integer overflow in a sum");
    EXPECT_DEATH(checkedSum(least, -1), "integer overflow in a sum");
}

TEST(CheckedArithmeticDeathTest, EndsTheProgramOnADifferenceThatDoesNotFit)
{
    EXPECT_DEATH(checkedDifference(most, -1), "integer overflow in a difference");
    EXPECT_DEATH(checkedDifference(least, 1), "integer overflow in a difference");
    EXPECT_DEATH(checkedDifference(0, least), "integer overflow in a difference");
}

} // namespace
} // namespace roost
