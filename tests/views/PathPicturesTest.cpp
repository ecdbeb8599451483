#include "present/SVGPath.h"
#include "tests/views/PathCases.h"
#include "tests/views/PathSheet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace roost::test;
using testing::IsEmpty;

/// What is allowed between two renderers that smooth edges and draw the ends of strokes in their own ways.
/// The worst seen are 0.053 and 3, of 4096 pixels.
constexpr Apart allowed{.onEdges = 0.06, .strays = 4};

bool areSame(const Apart& apart)
{
    return apart.onEdges <= allowed.onEdges && apart.strays <= allowed.strays;
}

/// The paths of `sheet` that look different in `one` and `other`, with the numbers.
std::vector<std::string> differing(const PathSheet& sheet, const QImage& one, const QImage& other)
{
    std::vector<std::string> found;
    for (std::size_t i = 0; i < sheet.paths.size(); ++i) {
        const Apart apart = compare(one, other, sheet.cellOf(i));
        if (!areSame(apart)) {
            found.push_back(std::to_string(apart.onEdges) + " " + std::to_string(apart.strays) + " " +
                            sheet.paths[i]);
        }
    }
    return found;
}

class PathPictures : public testing::TestWithParam<PathSheet::Ink> {
protected:
    void SetUp() override
    {
        if (rsvgConvert().isEmpty()) {
            GTEST_SKIP() << "rsvg-convert (Debian: librsvg2-bin) is not here to compare with";
        }
    }
};

TEST_P(PathPictures, OfWrittenPathsAreTheSameAsLibrsvgs)
{
    const PathSheet sheet{writtenPaths(), GetParam()};
    const QImage theirs = drawnByRsvg(sheet.svg());
    ASSERT_FALSE(theirs.isNull());
    EXPECT_THAT(differing(sheet, sheet.painted(), theirs), IsEmpty());
}

TEST_P(PathPictures, OfRandomPathsAreTheSameAsLibrsvgs)
{
    const PathSheet sheet{randomPaths(400), GetParam()};
    const QImage theirs = drawnByRsvg(sheet.svg());
    ASSERT_FALSE(theirs.isNull());
    EXPECT_THAT(differing(sheet, sheet.painted(), theirs), IsEmpty());
}

TEST_P(PathPictures, OfThePathsThatWeWriteAreTheSameToLibrsvg)
{
    const PathSheet sheet{writtenPaths(), GetParam()};
    PathSheet rewritten = sheet;
    for (std::string& path : rewritten.paths) {
        path = roost::SVGPath::text(roost::SVGPath::Parser{path}.run());
    }
    const QImage theirs = drawnByRsvg(sheet.svg());
    ASSERT_FALSE(theirs.isNull());
    EXPECT_THAT(differing(sheet, drawnByRsvg(rewritten.svg()), theirs), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Inks, PathPictures, testing::Values(PathSheet::Ink::filled, PathSheet::Ink::stroked),
                         [](const auto& tested) {
                             return tested.param == PathSheet::Ink::filled ? "Filled" : "Stroked";
                         });

/// How many of the written paths look different when all are changed by `change`.
template <class Change>
std::size_t seenOfWritten(Change change)
{
    const PathSheet sheet{writtenPaths(), PathSheet::Ink::stroked};
    PathSheet changed = sheet;
    for (std::string& path : changed.paths) {
        change(path);
    }
    return differing(sheet, sheet.painted(), changed.painted()).size();
}

TEST(PathPicturesMeasure, SeesASmallMove)
{
    const PathSheet sheet{writtenPaths(), PathSheet::Ink::stroked};
    const auto moved = differing(sheet, sheet.painted(), sheet.painted(0.2));
    EXPECT_GE(moved.size(), sheet.paths.size() * 9 / 10);
    EXPECT_THAT(differing(sheet, sheet.painted(), sheet.painted()), IsEmpty());
}

TEST(PathPicturesMeasure, SeesAnotherFlag)
{
    std::size_t arcs = 0;
    const std::size_t seen = seenOfWritten([&arcs](std::string& path) {
        if (const auto flags = path.find(" 0 1 16 14"); flags != std::string::npos) {
            path[flags + 1] = '1';
            ++arcs;
        }
    });
    EXPECT_EQ(arcs, 12U);
    EXPECT_EQ(seen, arcs);
}

TEST(PathPicturesMeasure, SeesAMissingEnd)
{
    std::size_t closed = 0;
    const std::size_t seen = seenOfWritten([&closed](std::string& path) {
        if (path.ends_with("Z") && path.starts_with("M8 9A")) {
            path.pop_back();
            ++closed;
        }
    });
    EXPECT_EQ(closed, 72U);
    EXPECT_GE(seen, closed * 9 / 10);
}

} // namespace
