#include "present/SVGPath.h"
#include "tests/present/PathElements.h"
#include "tests/support/CommaLocale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace {

using namespace roost;
using namespace roost::test;

TEST(SVGPathText, WritesAbsoluteCommands)
{
    EXPECT_EQ(SVGPath::text(parsed("m1 2 h3 q1 1 2-2 c1 2 3 4 5 6 z")), "M1 2L4 2Q5 3 6 0C7 2 9 4 11 6Z");
    EXPECT_EQ(SVGPath::text({}), "");
}

TEST(SVGPathText, WritesNumbersAsShortAsTheyCanBe)
{
    EXPECT_EQ(SVGPath::text(parsed("M0.1-.25L1e100 1e-9")), "M0.1 -0.25L1e+100 1e-09");
}

TEST(SVGPathText, IsReadAsTheSamePath)
{
    const VectorPath path =
        parsed("M1 2 3.7 4l-.1.2z q1 2 3.3 4 t5 6 c.1.2.3.4.5.6s1 2 3 4a7 8 33 01 9 9H1e9z");
    EXPECT_EQ(parsed(SVGPath::text(path)), path);
}

/// A path of `count` elements of all kinds, with numbers of all sizes.
VectorPath anyPath(std::mt19937_64& random, int count)
{
    const auto number = [&random] {
        constexpr int smallest =
            std::numeric_limits<double>::min_exponent - std::numeric_limits<double>::digits;
        return std::ldexp(std::uniform_real_distribution{-1.0, 1.0}(random),
                          std::uniform_int_distribution{smallest, 1023}(random));
    };
    const auto point = [&number] { return PathPoint{number(), number()}; };
    VectorPath path;
    for (int i = 0; i < count; ++i) {
        switch (std::uniform_int_distribution{0, 4}(random)) {
        case 0:
            path.move(point());
            break;
        case 1:
            path.line(point());
            break;
        case 2:
            path.quad(point(), point());
            break;
        case 3:
            path.cubic(point(), point(), point());
            break;
        default:
            path.close();
        }
    }
    return path;
}

TEST(SVGPathText, IsReadAsTheSamePathWhateverTheNumbersAndTheLocale)
{
    const CommaLocale commas;
    std::mt19937_64 random{1};
    for (int round = 0; round < 2000; ++round) {
        const VectorPath path = anyPath(random, round % 20);
        const std::string text = SVGPath::text(path);
        ASSERT_EQ(parsed(text), path) << text;
        ASSERT_EQ(text.find(','), std::string::npos) << text;
    }
}

TEST(SVGPathText, KeepsTheLargestAndTheSmallestNumbers)
{
    using Limits = std::numeric_limits<double>;
    VectorPath path;
    path.move({Limits::max(), Limits::lowest()});
    path.line({Limits::min(), Limits::denorm_min()});
    path.line({1 + Limits::epsilon(), -0.0});
    EXPECT_EQ(parsed(SVGPath::text(path)), path);
}

} // namespace
