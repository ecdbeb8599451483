#include "views/PainterPath.h"

#include "present/SVGPath.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace roost;

TEST(PainterPath, HasTheSameElements)
{
    VectorPath path;
    path.move({1, 2});
    path.line({3, 4});
    path.quad({5, 6}, {7, 8});
    path.cubic({9, 10}, {11, 12}, {13, 14});
    path.close();
    path.line({15, 16});

    QPainterPath expected;
    expected.setFillRule(Qt::WindingFill);
    expected.moveTo(1, 2);
    expected.lineTo(3, 4);
    expected.quadTo(5, 6, 7, 8);
    expected.cubicTo(9, 10, 11, 12, 13, 14);
    expected.closeSubpath();
    expected.lineTo(15, 16);
    EXPECT_EQ(painterPath(path), expected);
}

TEST(PainterPath, FillsByTheNonZeroRule)
{
    // Two squares, one within the other, in the same direction and in opposite ones.
    const auto holds = [](const char* data) {
        return painterPath(SVGPath::Parser{data}.run()).contains(QPointF{5, 5});
    };
    EXPECT_TRUE(holds("M0 0h10v10h-10zM3 3h4v4h-4z"));
    EXPECT_FALSE(holds("M0 0h10v10h-10zM3 3v4h4v-4z"));
}

TEST(PainterPath, BeginsAtTheOriginWithoutAMove)
{
    const QPainterPath path = painterPath(SVGPath::Parser{"L3 4"}.run());
    ASSERT_EQ(path.elementCount(), 2);
    EXPECT_EQ(QPointF(path.elementAt(0)), QPointF(0, 0));
    EXPECT_EQ(QPointF(path.elementAt(1)), QPointF(3, 4));
}

TEST(PainterPath, LeavesOutWhatIsNotFinite)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    VectorPath path;
    path.move({1, 1});
    path.move({infinity, 1});
    path.line({1, -infinity});
    path.quad({1, infinity}, {2, 2});
    path.cubic({1, 2}, {3, 4}, {5, std::numeric_limits<double>::quiet_NaN()});
    path.line({2, 2});
    EXPECT_EQ(painterPath(path).elementCount(), 2);
}

TEST(PainterPath, IsEmptyForAnEmptyPath) { EXPECT_TRUE(painterPath({}).isEmpty()); }

} // namespace
