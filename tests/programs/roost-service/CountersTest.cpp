#include "programs/roost-service/Counters.h"

#include <gtest/gtest.h>

namespace roost::local {
namespace {

TEST(Counters, CountRequestsByEndpointAndProfile)
{
    Counters counters;
    counters.arrived(Endpoint::widget, "a", {});
    counters.arrived(Endpoint::widget, "b", {});
    counters.arrived(Endpoint::widget, std::nullopt, {});
    counters.arrived(Endpoint::token, "a", {});
    EXPECT_EQ(counters.requests(Endpoint::widget), 3);
    EXPECT_EQ(counters.requests(Endpoint::widget, "a"), 1);
    EXPECT_EQ(counters.requests(Endpoint::token, "a"), 1);
    EXPECT_EQ(counters.requests(Endpoint::token, "b"), 0);
    EXPECT_EQ(counters.requests(Endpoint::metadata), 0);
}

TEST(Counters, RememberTheMostTokenRequestsOfOneGrantAtOnce)
{
    Counters counters;
    auto first = counters.tokenRequestUnderWay("g");
    EXPECT_EQ(counters.mostTokenRequestsAtOnce(), 1);
    auto other = counters.tokenRequestUnderWay("h");
    EXPECT_EQ(counters.mostTokenRequestsAtOnce(), 1);
    first.reset();
    first = counters.tokenRequestUnderWay("g");
    EXPECT_EQ(counters.mostTokenRequestsAtOnce(), 1);
    const auto second = counters.tokenRequestUnderWay("g");
    EXPECT_EQ(counters.mostTokenRequestsAtOnce(), 2);
    first.reset();
    EXPECT_EQ(counters.mostTokenRequestsAtOnce(), 2);
}

TEST(Counters, OutliveNothingThatIsUnderWay)
{
    auto counters = std::make_unique<Counters>();
    auto underWay = counters->tokenRequestUnderWay("g");
    counters->clear();
    EXPECT_EQ(counters->mostTokenRequestsAtOnce(), 0);
    counters.reset();
    underWay.reset();
}

} // namespace
} // namespace roost::local
