#include "present/FormatZone.h"

#include "tests/present/Formats.h"
#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

using test::formatFor;
using test::moment;
using test::ScopedVariable;

TEST(FormatZone, IsUtcWhenNobodyKnowsTheName)
{
    const Date noon = moment("2026-03-04T12:00:00Z");
    EXPECT_EQ(formatFor("de", "Mars/Olympus").timeText(noon), "12:00");
    EXPECT_EQ(formatFor("de", "\xFF").timeText(noon), "12:00");
    EXPECT_EQ(formatFor("de", "UTC+05:30").timeText(noon), "17:30");
}

TEST(FormatZone, IsTheMachinesWhenThereIsNoName)
{
    const Date noon = moment("2026-03-04T12:00:00Z");
    for (const auto& [zone, time] :
         {std::pair{"Asia/Kolkata", "17:30"}, {"America/St_Johns", "08:30"}, {":Asia/Kathmandu", "17:45"}}) {
        const ScopedVariable variable{"TZ", zone};
        EXPECT_EQ(formatFor("de", "").timeText(noon), time) << zone;
    }
}

TEST(FormatZone, KnowsRulesThatAreYoungerThanTheLibraries)
{
    // Mexico gave summer time up in October 2022, Egypt took it up again in April 2023.
    EXPECT_EQ(formatFor("de", "America/Mexico_City").timeText(moment("2026-07-01T12:00:00Z")), "06:00");
    EXPECT_EQ(formatFor("de", "Africa/Cairo").timeText(moment("2026-07-01T12:00:00Z")), "15:00");
}

} // namespace
} // namespace roost
