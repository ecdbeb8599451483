#include "present/SVGPath.h"
#include "tests/present/PathElements.h"

#include <gtest/gtest.h>

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

} // namespace
