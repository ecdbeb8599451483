#include "present/VectorPath.h"

#include "tests/present/PathElements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace roost;
using namespace roost::test;

VectorPath oneOfEach()
{
    VectorPath path;
    path.move({1, 2});
    path.line({3, 4});
    path.quad({5, 6}, {7, 8});
    path.cubic({9, 10}, {11, 12}, {13, 14});
    path.close();
    return path;
}

TEST(VectorPath, IsEmptyAtFirst)
{
    EXPECT_TRUE(VectorPath{}.isEmpty());
    EXPECT_EQ(VectorPath{}.size(), 0U);
    EXPECT_THAT(VectorPath{}.elements(), testing::IsEmpty());
}

TEST(VectorPath, GivesItsElementsInOrder)
{
    EXPECT_EQ(oneOfEach().elements(), (Elements{Move{{1, 2}}, Line{{3, 4}}, Quad{{5, 6}, {7, 8}},
                                                Cubic{{9, 10}, {11, 12}, {13, 14}}, Close{}}));
    EXPECT_EQ(oneOfEach().size(), 5U);
    EXPECT_FALSE(oneOfEach().isEmpty());
}

TEST(VectorPath, EqualsWhatHasTheSameElements)
{
    EXPECT_EQ(oneOfEach(), oneOfEach());
    VectorPath longer = oneOfEach();
    longer.close();
    EXPECT_NE(longer, oneOfEach());
    VectorPath move;
    move.move({1, 1});
    VectorPath line;
    line.line({1, 1});
    EXPECT_NE(move, line);
}

TEST(VectorPath, IsScaledAboutTheOriginAndThenMoved)
{
    EXPECT_EQ(oneOfEach().placed(2, {100, 200}).elements(),
              (Elements{Move{{102, 204}}, Line{{106, 208}}, Quad{{110, 212}, {114, 216}},
                        Cubic{{118, 220}, {122, 224}, {126, 228}}, Close{}}));
}

} // namespace
