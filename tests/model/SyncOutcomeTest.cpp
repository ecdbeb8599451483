#include "model/SyncOutcome.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace roost {
namespace {

using Kind = SyncReason::Kind;

TEST(Describe, NamesTheReasonInOneWord)
{
    EXPECT_EQ(describe({Kind::unavailable, {}}), "unavailable");
    EXPECT_EQ(describe({Kind::unreachable, {}}), "unreachable");
    EXPECT_EQ(describe({Kind::malformed, {}}), "malformed");
}

TEST(Describe, SaysHowLongTheServiceWantsToBeLeftAlone)
{
    EXPECT_EQ(describe({Kind::unavailable, 120}), "unavailable, retry after 120 s");
    EXPECT_EQ(describe({Kind::unavailable, 0.5}), "unavailable, retry after 0.5 s");
    EXPECT_EQ(describe({Kind::unavailable, -3}), "unavailable, retry after -3 s");
    EXPECT_EQ(describe({Kind::unavailable, std::numeric_limits<double>::infinity()}),
              "unavailable, retry after inf s");
    EXPECT_EQ(describe({Kind::unavailable, std::nan("")}), "unavailable, retry after nan s");
}

} // namespace
} // namespace roost
