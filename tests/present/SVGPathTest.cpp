#include "present/SVGPath.h"

#include "tests/present/PathElements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using namespace roost;
using namespace roost::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(SVGPath, DrawsATriangleAndClosesIt)
{
    EXPECT_EQ(elementsOf("M0 0L10 0 10 10z"),
              (Elements{Move{{0, 0}}, Line{{10, 0}}, Line{{10, 10}}, Close{}}));
}

TEST(SVGPath, DrawsNothingForNoData)
{
    EXPECT_TRUE(parsed("").isEmpty());
    EXPECT_TRUE(parsed(" ,\n\t").isEmpty());
}

TEST(SVGPath, DrawsNothingForDataThatBeginWithNumbers) { EXPECT_TRUE(parsed("1 2 L3 4").isEmpty()); }

TEST(SVGPath, TakesPairsAfterAMoveForLines)
{
    EXPECT_EQ(elementsOf("M1 2 3 4"), (Elements{Move{{1, 2}}, Line{{3, 4}}}));
    EXPECT_EQ(elementsOf("m1 1 2 2"), (Elements{Move{{1, 1}}, Line{{3, 3}}}));
    EXPECT_EQ(elementsOf("M1 2 3 4 5 6"), (Elements{Move{{1, 2}}, Line{{3, 4}}, Line{{5, 6}}}));
    EXPECT_EQ(elementsOf("m1 2 3 4 5 6"), (Elements{Move{{1, 2}}, Line{{4, 6}}, Line{{9, 12}}}));
}

TEST(SVGPath, MovesFromWhereItIsForASmallLetter)
{
    EXPECT_EQ(elementsOf("M5 5L6 7m1 1"), (Elements{Move{{5, 5}}, Line{{6, 7}}, Move{{7, 8}}}));
}

TEST(SVGPath, DrawsLinesAlongTheAxes)
{
    EXPECT_EQ(elementsOf("M1 2H5V7h-2v-3"),
              (Elements{Move{{1, 2}}, Line{{5, 2}}, Line{{5, 7}}, Line{{3, 7}}, Line{{3, 4}}}));
}

TEST(SVGPath, DrawsCubicCurves)
{
    EXPECT_EQ(elementsOf("M1 1C2 3 4 5 6 7"), (Elements{Move{{1, 1}}, Cubic{{2, 3}, {4, 5}, {6, 7}}}));
    EXPECT_EQ(elementsOf("M1 1c2 3 4 5 6 7"), (Elements{Move{{1, 1}}, Cubic{{3, 4}, {5, 6}, {7, 8}}}));
}

TEST(SVGPath, DrawsQuadraticCurves)
{
    EXPECT_EQ(elementsOf("M1 1Q2 3 4 5"), (Elements{Move{{1, 1}}, Quad{{2, 3}, {4, 5}}}));
    EXPECT_EQ(elementsOf("M1 1q2 3 4 5"), (Elements{Move{{1, 1}}, Quad{{3, 4}, {5, 6}}}));
}

TEST(SVGPath, ContinuesCubicCurvesSmoothly)
{
    EXPECT_EQ(elementsOf("M0 0C1 1 4 1 5 5S8 8 9 5"),
              (Elements{Move{}, Cubic{{1, 1}, {4, 1}, {5, 5}}, Cubic{{6, 9}, {8, 8}, {9, 5}}}));
    EXPECT_EQ(elementsOf("M0 0c1 1 4 1 5 5s3 3 4 0"),
              (Elements{Move{}, Cubic{{1, 1}, {4, 1}, {5, 5}}, Cubic{{6, 9}, {8, 8}, {9, 5}}}));
}

TEST(SVGPath, ContinuesASmoothCubicCurveAfterAnother)
{
    EXPECT_EQ(elementsOf("M0 0S1 2 3 3 5 5 7 7"),
              (Elements{Move{}, Cubic{{0, 0}, {1, 2}, {3, 3}}, Cubic{{5, 4}, {5, 5}, {7, 7}}}));
}

TEST(SVGPath, ContinuesQuadraticCurvesSmoothly)
{
    EXPECT_EQ(elementsOf("M0 0Q2 4 4 4T8 4 12 4"),
              (Elements{Move{}, Quad{{2, 4}, {4, 4}}, Quad{{6, 4}, {8, 4}}, Quad{{10, 4}, {12, 4}}}));
    EXPECT_EQ(elementsOf("M0 0q2 4 4 4t4 0"), (Elements{Move{}, Quad{{2, 4}, {4, 4}}, Quad{{6, 4}, {8, 4}}}));
}

TEST(SVGPath, BeginsASmoothCurveWithoutAHandleAfterAnythingButItsOwnKind)
{
    for (const std::string before :
         {"M1 1", "M1 0L1 1", "M0 1H1", "M1 0V1", "M0 0Q5 5 1 1", "M0 0T1 1", "M0 0A2 2 0 0 1 1 1",
          "M1 1A2 2 0 0 1 1 1", "M1 1C2 2 3 3 4 4Z", "M9 9C2 2 3 3 4 4M1 1"}) {
        EXPECT_EQ(elementsOf(before + "S3 3 4 4").back(),
                  (VectorPath::Element{Cubic{{1, 1}, {3, 3}, {4, 4}}}))
            << before;
    }
    for (const std::string before :
         {"M1 1", "M1 0L1 1", "M0 1H1", "M1 0V1", "M0 0C5 5 6 6 1 1", "M0 0S2 2 1 1", "M0 0A2 2 0 0 1 1 1",
          "M1 1A2 2 0 0 1 1 1", "M1 1Q2 2 3 3Z", "M9 9Q2 2 3 3M1 1"}) {
        EXPECT_EQ(elementsOf(before + "T4 4").back(), (VectorPath::Element{Quad{{1, 1}, {4, 4}}})) << before;
    }
}

TEST(SVGPath, RepeatsEachCommandWhenOnlyArgumentsFollow)
{
    EXPECT_EQ(parsed("M0 0L1 2 3 4"), parsed("M0 0L1 2L3 4"));
    EXPECT_EQ(parsed("M0 0l1 2 3 4"), parsed("M0 0l1 2l3 4"));
    EXPECT_EQ(parsed("M0 0H1 2"), parsed("M0 0H1H2"));
    EXPECT_EQ(parsed("M0 0v1 2"), parsed("M0 0v1v2"));
    EXPECT_EQ(parsed("M0 0c1 2 3 4 5 6 7 8 9 1 2 3"), parsed("M0 0c1 2 3 4 5 6c7 8 9 1 2 3"));
    EXPECT_EQ(parsed("M0 0s3 4 5 6 7 8 9 1"), parsed("M0 0s3 4 5 6s7 8 9 1"));
    EXPECT_EQ(parsed("M0 0q1 2 3 4 5 6 7 8"), parsed("M0 0q1 2 3 4q5 6 7 8"));
    EXPECT_EQ(parsed("M0 0t1 2 3 4"), parsed("M0 0t1 2t3 4"));
    EXPECT_EQ(parsed("M0 0a2 1 30 0 1 2 2 2 1 30 1 0 3 3"), parsed("M0 0a2 1 30 0 1 2 2a2 1 30 1 0 3 3"));
    EXPECT_THAT(elementsOf("M0 0L1 2 3 4"), SizeIs(3));
}

TEST(SVGPath, GoesOnFromTheBeginningOfASubpathAfterItsEnd)
{
    EXPECT_EQ(elementsOf("M3 4h5v5zl1 1"),
              (Elements{Move{{3, 4}}, Line{{8, 4}}, Line{{8, 9}}, Close{}, Line{{4, 5}}}));
    EXPECT_EQ(elementsOf("M3 4h5Zm1 1h1Z l 1 0"), (Elements{Move{{3, 4}}, Line{{8, 4}}, Close{}, Move{{4, 5}},
                                                            Line{{5, 5}}, Close{}, Line{{5, 5}}}));
}

TEST(SVGPath, StopsAtANumberAfterAClose)
{
    EXPECT_EQ(elementsOf("M0 0L1 1Z 5 5 L9 9"), (Elements{Move{}, Line{{1, 1}}, Close{}}));
    EXPECT_EQ(elementsOf("M0 0L1 1z5 5"), (Elements{Move{}, Line{{1, 1}}, Close{}}));
}

TEST(SVGPath, ClosesAgainAndAgain)
{
    EXPECT_EQ(elementsOf("M1 1zZ z"), (Elements{Move{{1, 1}}, Close{}, Close{}, Close{}}));
}

TEST(SVGPath, BeginsAtTheOriginWithoutAMove)
{
    EXPECT_EQ(elementsOf("l1 1"), (Elements{Line{{1, 1}}}));
    EXPECT_EQ(elementsOf("zh2"), (Elements{Close{}, Line{{2, 0}}}));
}

TEST(SVGPath, StopsAtALetterThatIsNoCommandAndKeepsWhatWasDrawn)
{
    const Elements drawn{Move{{1, 2}}, Line{{3, 4}}};
    EXPECT_EQ(elementsOf("M1 2L3 4X5 6L7 8"), drawn);
    EXPECT_EQ(elementsOf("M1 2L3 4 B5 6"), drawn);
    EXPECT_EQ(elementsOf("M1 2L3 4é5 6"), drawn);
    EXPECT_EQ(elementsOf(std::string{"M1 2L3 4\0L5 6", 13}), drawn);
    EXPECT_TRUE(parsed("X M1 2").isEmpty());
}

TEST(SVGPath, StopsBeforeACommandThatLacksArguments)
{
    const Elements drawn{Move{{1, 2}}};
    for (const std::string rest :
         {"L", "L3", "L3,", "L3 z", "H", "V x", "C3 4 5 6 7", "S3 4 5", "Q3 4 5", "T3", "A1 2 3 0 1 5",
          "A1 2 3 0 2 5 5", "A1 2 3 2 0 5 5", "A1 2 3 0", "A1 2 3", "A1 2", "m", "M 7", " 3"}) {
        EXPECT_EQ(elementsOf("M1 2" + rest + " L9 9"), drawn) << rest;
        EXPECT_EQ(elementsOf("M1 2" + rest), drawn) << rest;
    }
}

TEST(SVGPath, TakesTabsLineFeedsBlanksAndCommasForSeparators)
{
    const VectorPath plain = parsed("M1 2L3 4Z");
    EXPECT_EQ(parsed("\t\nM, ,1\t,\n2 ,L\n\n3,,4,Z, "), plain);
    EXPECT_EQ(parsed("M1,2,L,3,4,Z,"), plain);
}

TEST(SVGPath, TakesNothingElseForASeparator)
{
    for (const char* other : {"\r", "\f", "\v", ";", "\xC2\xA0"}) {
        EXPECT_EQ(elementsOf(std::string{"M1 2"} + other + "L3 4"), (Elements{Move{{1, 2}}}));
        EXPECT_TRUE(parsed(std::string{other} + "M1 2").isEmpty());
        EXPECT_TRUE(parsed(std::string{"M1"} + other + "2").isEmpty());
    }
}

TEST(SVGPath, ReadsFlagsAsSingleCharacters)
{
    const VectorPath apart = parsed("M0 0A5 4 30 1 1 3 4");
    EXPECT_EQ(parsed("M0 0A5 4 30 11 3 4"), apart);
    EXPECT_EQ(parsed("M0 0A5 4 30 113 4"), apart);
    EXPECT_EQ(parsed("M0 0A5 4 30,1,13,4"), apart);
    EXPECT_EQ(parsed("M0 0A5 4 30 1\n1+3+4"), apart);
    EXPECT_EQ(parsed("M0 0A5 4 30 01.5.5"), parsed("M0 0A5 4 30 0 1 0.5 0.5"));
    EXPECT_EQ(parsed("M0 0a5 4 30 1015-3"), parsed("M0 0a5 4 30 1 0 15 -3"));
}

TEST(SVGPath, TakesNoOtherNumberForAFlag)
{
    for (const char* flags : {"2 0", "0 2", "-1 0", "+1 1", "a 1", "1 .0"}) {
        EXPECT_EQ(elementsOf(std::string{"M0 0A5 4 30 "} + flags + " 3 4"), (Elements{Move{}})) << flags;
    }
}

TEST(SVGPath, DrawsWhatAnArcNeedsBetweenOtherCommands)
{
    // From where the path is, and on from where the arc ends.
    const Elements elements = elementsOf("M2 2a1 1 0 0 1 1 1l1 0");
    ASSERT_THAT(elements, SizeIs(3));
    EXPECT_EQ(std::get<Cubic>(elements[1]).to, (PathPoint{3, 3}));
    EXPECT_EQ(elements[2], VectorPath::Element{(Line{{4, 3}})});
    EXPECT_EQ(elementsOf("M2 2A1 1 0 0 1 3 3h1"), elements);
}

TEST(SVGPath, DrawsNothingForAnArcThatEndsWhereItBegins)
{
    EXPECT_EQ(elementsOf("M2 2A5 5 0 1 1 2 2L3 3"), (Elements{Move{{2, 2}}, Line{{3, 3}}}));
}

/// `count` bytes of `unit` repeated.
std::string bytesOf(std::string_view unit, std::size_t count)
{
    std::string bytes;
    bytes.reserve(count + unit.size());
    while (bytes.size() < count) {
        bytes += unit;
    }
    return bytes;
}

constexpr std::size_t tenMegabytes = 10'000'000;

TEST(SVGPath, ReadsTenMegabytesOfCommands)
{
    // Anything that is not linear would not come back within the time that a test has.
    EXPECT_EQ(parsed("M0 0" + bytesOf("l1-1", tenMegabytes)).size(), tenMegabytes / 4 + 1);
    EXPECT_EQ(parsed("M0 0l" + bytesOf("1-1 ", tenMegabytes)).size(), tenMegabytes / 4 + 1);
    EXPECT_EQ(parsed(bytesOf("z", tenMegabytes)).size(), tenMegabytes);
    const std::string arc = "a9 8 7 01.5-1 ";
    EXPECT_GE(parsed("M0 0" + bytesOf(arc, tenMegabytes)).size(), tenMegabytes / arc.size());
}

TEST(SVGPath, ReadsTenMegabytesOfOneThing)
{
    EXPECT_EQ(endOf("M1 2" + bytesOf(" ", tenMegabytes) + "L3" + bytesOf(",", tenMegabytes) + "4"),
              (PathPoint{3, 4}));
    EXPECT_EQ(endOf("M" + bytesOf("0", tenMegabytes) + "7 1." + bytesOf("0", tenMegabytes)),
              (PathPoint{7, 1}));
    EXPECT_EQ(endOf("M." + bytesOf("3", tenMegabytes) + " 1e" + bytesOf("0", tenMegabytes) + "1"),
              (PathPoint{1.0 / 3, 10}));
    EXPECT_EQ(elementsOf("M1 2L1" + bytesOf("e", tenMegabytes)), (Elements{Move{{1, 2}}}));
}

} // namespace
