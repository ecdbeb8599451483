#include "tests/present/PathElements.h"
#include "tests/support/CommaLocale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

namespace {

using namespace roost;
using namespace roost::test;

/// What the data make of two numbers written one after another.
PathPoint pairOf(const std::string& numbers) { return endOf("M" + numbers); }

TEST(SVGPathNumbers, AreDecimal)
{
    EXPECT_EQ(pairOf("1 2"), (PathPoint{1, 2}));
    EXPECT_EQ(pairOf("+1.25 -0.5"), (PathPoint{1.25, -0.5}));
    EXPECT_EQ(pairOf("007 1."), (PathPoint{7, 1}));
    EXPECT_EQ(pairOf(".5 -.5"), (PathPoint{0.5, -0.5}));
    EXPECT_EQ(pairOf("+.5 1.e1"), (PathPoint{0.5, 10}));
}

TEST(SVGPathNumbers, EndAtASecondPoint)
{
    EXPECT_EQ(pairOf("1.5.5"), (PathPoint{1.5, 0.5}));
    EXPECT_EQ(pairOf(".5.5"), (PathPoint{0.5, 0.5}));
    EXPECT_EQ(elementsOf("M0,0L.5.5").back(), VectorPath::Element{(Line{{0.5, 0.5}})});
    EXPECT_EQ(pairOf("1e1.5"), (PathPoint{10, 0.5}));
}

TEST(SVGPathNumbers, EndAtASign)
{
    EXPECT_EQ(pairOf("1-2"), (PathPoint{1, -2}));
    EXPECT_EQ(pairOf("1+2"), (PathPoint{1, 2}));
    EXPECT_EQ(pairOf("1.-.5"), (PathPoint{1, -0.5}));
    EXPECT_EQ(pairOf("1e1-2"), (PathPoint{10, -2}));
}

TEST(SVGPathNumbers, MayHaveAnExponentWithASignOfItsOwn)
{
    EXPECT_EQ(pairOf("1e2 1E2"), (PathPoint{100, 100}));
    EXPECT_EQ(pairOf("25e-1 1e+2"), (PathPoint{2.5, 100}));
    EXPECT_EQ(elementsOf("M0 0L1e1-2").back(), VectorPath::Element{(Line{{10, -2}})});
}

TEST(SVGPathNumbers, EndAtASecondExponent)
{
    // The first of both is read: a horizontal line shows it.
    EXPECT_EQ(elementsOf("M0 0H1e2e3"), (Elements{Move{}, Line{{100, 0}}}));
}

TEST(SVGPathNumbers, NeedADigitSomewhereBeforeTheExponent)
{
    for (const char* none :
         {"", "-", "+", ".", "-.", "e1", ".e1", "-e1", "+-1", "--1", "- 1", "inf", "nan", "0x"}) {
        EXPECT_EQ(elementsOf(std::string{"M1 2L"} + none + " 3"), (Elements{Move{{1, 2}}})) << none;
    }
}

TEST(SVGPathNumbers, AreNoneWithAnExponentWithoutDigits)
{
    for (const char* none : {"1e", "1e+", "1e-", "1E ", "1e.5", "1.5e-x", "1e L"}) {
        EXPECT_EQ(elementsOf(std::string{"M1 2H"} + none), (Elements{Move{{1, 2}}})) << none;
    }
}

TEST(SVGPathNumbers, AreTheNearestDoubles)
{
    EXPECT_EQ(pairOf("0.1 123456789.123456789"), (PathPoint{0.1, 123456789.123456789}));
    EXPECT_EQ(pairOf("1.7976931348623157e308 -4.9406564584124654e-324"),
              (PathPoint{1.7976931348623157e308, -4.9406564584124654e-324}));
    EXPECT_EQ(pairOf("9007199254740993 9007199254740992.99999999999999999999"),
              (PathPoint{9007199254740992.0, 9007199254740992.0}));
}

TEST(SVGPathNumbers, AreZeroWhereTheyAreTooSmall)
{
    EXPECT_EQ(pairOf("1e-999 -1e-400"), (PathPoint{0, 0}));
    EXPECT_EQ(pairOf("0e999999999999 0." + std::string(400, '0') + "1e50"), (PathPoint{0, 0}));
}

TEST(SVGPathNumbers, AreNoneWhereTheyAreTooLarge)
{
    const std::string nines(400, '9');
    for (const std::string& large :
         std::vector<std::string>{"1e309", "-1e999999999999", nines, nines + "e-50"}) {
        EXPECT_EQ(elementsOf("M1 2H" + large), (Elements{Move{{1, 2}}})) << large;
    }
}

TEST(SVGPathNumbers, HaveExponentsUpToTheLargestIntegerAndBeyond)
{
    EXPECT_EQ(elementsOf("M1 2H5e99999999999999999999"), (Elements{Move{{1, 2}}}));
    EXPECT_EQ(pairOf("1 5e-99999999999999999999"), (PathPoint{1, 0}));
    for (const char* number : {"16", "0.00016"}) {
        const std::string text = number;
        EXPECT_EQ(elementsOf("M1 2H" + text + "e9223372036854775807"), (Elements{Move{{1, 2}}})) << text;
        EXPECT_EQ(pairOf("1 " + text + "e-9223372036854775808"), (PathPoint{1, 0})) << text;
    }
}

TEST(SVGPathNumbers, DoNotDependOnTheLocale)
{
    const CommaLocale commas;
    EXPECT_EQ(pairOf("1.5,2.5"), (PathPoint{1.5, 2.5}));
    EXPECT_EQ(pairOf("1.5e-999,2.5"), (PathPoint{0, 2.5}));
}

TEST(SVGPathNumbers, AreReadBackAsTheyWereWritten)
{
    std::mt19937_64 random{1};
    for (int round = 0; round < 10'000; ++round) {
        const auto any = [&random] {
            return std::ldexp(std::uniform_real_distribution{-1.0, 1.0}(random),
                              std::uniform_int_distribution{-60, 60}(random));
        };
        VectorPath path;
        path.move({any(), any()});
        ASSERT_EQ(parsed(SVGPath::text(path)), path);
    }
}

} // namespace
