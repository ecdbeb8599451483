#include "service/EndpointCache.h"

#include "tests/support/OAuthFixture.h"

#include <gtest/gtest.h>

namespace roost::test {

namespace {

using namespace std::chrono_literals;

const Date start = Date(std::chrono::milliseconds(1'718'000'000'123));

} // namespace

TEST(EndpointCache, HoldsNothingAtFirst) { EXPECT_EQ(EndpointCache{}.value(start), std::nullopt); }

TEST(EndpointCache, GivesWhatWasStoredForLessThanAnHour)
{
    EndpointCache cache;
    cache.store(endpointsOfExample(), start);
    EXPECT_EQ(cache.value(start), endpointsOfExample());
    EXPECT_EQ(cache.value(start + 3599'900ms), endpointsOfExample());
    EXPECT_EQ(cache.value(start + 3600s), std::nullopt);
    EXPECT_EQ(cache.value(start + 3600s - 1ms), endpointsOfExample());
}

TEST(EndpointCache, KeepsItsValueWhenTheClockIsSetBack)
{
    EndpointCache cache;
    cache.store(endpointsOfExample(), start);
    EXPECT_EQ(cache.value(start - 24h * 365), endpointsOfExample());
}

TEST(EndpointCache, HoldsTheLaterOfTwoValues)
{
    EndpointCache cache;
    cache.store(endpointsOfExample(), start);
    OAuthEndpoints other = endpointsOfExample();
    other.resource = "other";
    cache.store(other, start + 10s);
    EXPECT_EQ(cache.value(start + 3605s), other);
}

} // namespace roost::test
