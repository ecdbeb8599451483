#include "present/BrandBadge.h"

#include "tests/present/PathElements.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

namespace {

using namespace roost;
using namespace roost::test;

TEST(BrandBadge, TakesTheFirstLetterOfTheLabel)
{
    EXPECT_EQ(brandBadge("mastodon", "Zeta", 24).letter, "Z");
    EXPECT_EQ(brandBadge("mastodon", "zeta", 24).letter, "Z");
}

TEST(BrandBadge, TakesTheFirstLetterOfThePlatformWithoutALabel)
{
    EXPECT_EQ(brandBadge("mastodon", std::nullopt, 24).letter, "M");
    EXPECT_EQ(brandBadge("mastodon", "", 24).letter, "M");
    EXPECT_EQ(brandBadge("", std::nullopt, 24).letter, "");
}

TEST(BrandBadge, GrowsInAllItsLengthsWithItsSize)
{
    const BrandBadge badge = brandBadge("mastodon", std::nullopt, 100);
    EXPECT_DOUBLE_EQ(badge.lineWidth, 8);
    EXPECT_DOUBLE_EQ(badge.fontSize, 52);
    EXPECT_EQ(badge.frame, continuousSquare(100, 0.28 * 100));
}

TEST(BadgeLetter, IsUpperCaseWhereThereIsOne)
{
    EXPECT_EQ(badgeLetter("bluesky"), "B");
    EXPECT_EQ(badgeLetter("ärger"), "Ä");
    EXPECT_EQ(badgeLetter("жук"), "Ж");
    EXPECT_EQ(badgeLetter("7up"), "7");
    EXPECT_EQ(badgeLetter("中文"), "中");
    EXPECT_EQ(badgeLetter("\u0645\u0631\u062D\u0628\u0627"), "\u0645");
}

TEST(BadgeLetter, DoesNotDependOnTheLanguage)
{
    EXPECT_EQ(badgeLetter("instagram"), "I");
    EXPECT_EQ(badgeLetter("ı"), "I");
}

TEST(BadgeLetter, IsTwoLettersWhereTheUpperCaseIs)
{
    EXPECT_EQ(badgeLetter("ßharp"), "SS");
    EXPECT_EQ(badgeLetter("ﬁsh"), "FI");
}

TEST(BadgeLetter, KeepsCombiningMarksOnTheirLetter)
{
    EXPECT_EQ(badgeLetter("e\u0301t\u00E9"), "E\u0301");
    EXPECT_EQ(badgeLetter("o\u0308\u0323x"), "O\u0308\u0323");
    EXPECT_EQ(badgeLetter("\u0628\u064E\u0627"), "\u0628\u064E");
    EXPECT_EQ(badgeLetter("\u0915\u093F\u0924"), "\u0915\u093F");
}

TEST(BadgeLetter, KeepsAnEmojiWhole)
{
    // A family joined of four, a flag of two letters, a hand with a skin colour, a digit in a key cap.
    EXPECT_EQ(badgeLetter("👨‍👩‍👧‍👦family"), "👨‍👩‍👧‍👦");
    EXPECT_EQ(badgeLetter("🇩🇪🇫🇷"), "🇩🇪");
    EXPECT_EQ(badgeLetter("👋🏽hello"), "👋🏽");
    EXPECT_EQ(badgeLetter("1\uFE0F\u20E3st"), "1\uFE0F\u20E3");
}

TEST(BadgeLetter, KeepsAKoreanSyllableWhole)
{
    EXPECT_EQ(badgeLetter("\u1112\u1161\u11AB\u1100"), "\u1112\u1161\u11AB");
}

TEST(BadgeLetter, IsAReplacementForWhatIsNoText) { EXPECT_EQ(badgeLetter("\xFFzeta"), "\uFFFD"); }

/// How much a curve bends where it begins, 1 / radius.
double curvature(PathPoint p0, PathPoint p1, PathPoint p2)
{
    const PathPoint a = p1 - p0;
    const PathPoint b = p2 - p1;
    return 2.0 / 3 * (a.x * b.y - a.y * b.x) / std::pow(std::hypot(a.x, a.y), 3);
}

TEST(ContinuousSquare, TouchesAllFourSidesAndStaysWithin)
{
    double least = 100;
    double most = 0;
    int onSides = 0;
    continuousSquare(100, 28).visit([&](const auto& element) {
        if constexpr (requires { element.to; }) {
            const auto [x, y] = element.to;
            least = std::min({least, x, y});
            most = std::max({most, x, y});
            onSides += x == 0 || y == 0 || x == 100 || y == 100 ? 1 : 0;
        }
    });
    EXPECT_EQ(least, 0);
    EXPECT_EQ(most, 100);
    EXPECT_GE(onSides, 8);
}

TEST(ContinuousSquare, BendsWithoutAJump)
{
    const double radius = 28;
    const Elements elements = continuousSquare(100, radius).elements();
    ASSERT_EQ(elements.size(), 17U);
    for (std::size_t corner = 0; corner < 4; ++corner) {
        const std::size_t at = 4 * corner;
        const PathPoint start =
            corner == 0 ? std::get<Move>(elements[at]).to : std::get<Line>(elements[at]).to;
        const auto in = std::get<Cubic>(elements[at + 1]);
        const auto arc = std::get<Cubic>(elements[at + 2]);
        const auto out = std::get<Cubic>(elements[at + 3]);
        EXPECT_NEAR(curvature(start, in.control1, in.control2), 0, 1e-9);
        EXPECT_NEAR(curvature(in.to, in.control2, in.control1), -1 / radius, 1e-9);
        // A cubic curve is a circle's arc but for a thousandth.
        EXPECT_NEAR(curvature(in.to, arc.control1, arc.control2), 1 / radius, 1e-3 / radius);
        EXPECT_NEAR(curvature(arc.to, arc.control2, arc.control1), -1 / radius, 1e-3 / radius);
        EXPECT_NEAR(curvature(arc.to, out.control1, out.control2), 1 / radius, 1e-9);
        EXPECT_NEAR(curvature(out.to, out.control2, out.control1), 0, 1e-9);
    }
    EXPECT_EQ(elements.back(), VectorPath::Element{Close{}});
}

TEST(ContinuousSquare, HasRoomForTheRadiusOfBadges)
{
    // Where a corner ends, the next has not begun yet.
    const Elements elements = continuousSquare(1, 0.28).elements();
    const double end = std::get<Cubic>(elements[3]).to.x;
    const double next = std::get<Line>(elements[4]).to.x;
    EXPECT_LT(end, next);
}

} // namespace
