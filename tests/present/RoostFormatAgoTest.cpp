#include "present/RoostFormat.h"
#include "tests/present/Formats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <regex>

namespace roost {
namespace {

using test::formatFor;

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;

TEST(RoostFormatAgo, SaysNowBelowAMinute)
{
    const RoostFormat format = formatFor("en");
    for (const double seconds : {0.0, 1.0, 59.0, 59.9, -1.0, -1e9, std::nan("")}) {
        EXPECT_EQ(format.ago(seconds), "now") << seconds;
    }
    EXPECT_EQ(formatFor("de").ago(0), "jetzt");
    EXPECT_EQ(formatFor("fr").ago(59.9), "maintenant");
    EXPECT_EQ(formatFor("ja").ago(0), "今");
}

TEST(RoostFormatAgo, CutsToTheGreatestUnitThatFits)
{
    const RoostFormat format = formatFor("en");
    EXPECT_EQ(format.ago(60), "1 min. ago");
    EXPECT_EQ(format.ago(60.5), "1 min. ago");
    EXPECT_EQ(format.ago(119.999), "1 min. ago");
    EXPECT_EQ(format.ago(119.9999), "1 min. ago") << "not rounded, by no unit";
    EXPECT_EQ(format.ago(5 * minute), "5 min. ago");
    EXPECT_EQ(format.ago(hour - 0.001), "59 min. ago");
    EXPECT_EQ(format.ago(hour), "1 hr. ago");
    EXPECT_EQ(format.ago(3 * hour + 59 * minute), "3 hr. ago");
    EXPECT_EQ(format.ago(day - 1), "23 hr. ago");
    EXPECT_EQ(format.ago(day), "1 day ago");
    EXPECT_EQ(format.ago(2 * day), "2 days ago");
    EXPECT_EQ(format.ago(7 * day - 1), "6 days ago");
    EXPECT_EQ(format.ago(7 * day), "1 wk. ago");
    EXPECT_EQ(format.ago(30 * day), "4 wk. ago");
}

TEST(RoostFormatAgo, CountsMonthsAndYearsBackFromTheBeginningOf2001)
{
    const RoostFormat format = formatFor("en");
    // December 2000 has 31 days, November 30; the year 2000 has 366, 1999 has 365.
    EXPECT_EQ(format.ago(31 * day - 1), "4 wk. ago");
    EXPECT_EQ(format.ago(31 * day), "1 mo. ago");
    EXPECT_EQ(format.ago(61 * day - 1), "1 mo. ago");
    EXPECT_EQ(format.ago(61 * day), "2 mo. ago");
    EXPECT_EQ(format.ago(366 * day - 1), "11 mo. ago");
    EXPECT_EQ(format.ago(366 * day), "1 yr. ago");
    EXPECT_EQ(format.ago((366 + 365) * day - 1), "1 yr. ago");
    EXPECT_EQ(format.ago((366 + 365) * day), "2 yr. ago");
    EXPECT_EQ(format.ago(1999 * 365.25 * day), "1,999 yr. ago") << "the calendar was Julian before 1582";
}

TEST(RoostFormatAgo, CountsInTheZoneOfTheCalendar)
{
    // There the reference is the evening of 31 December, from where a month goes back to 30 November.
    const RoostFormat format{{.locale = "en", .calendarTimeZone = "America/New_York", .timeZone = "UTC"}};
    EXPECT_EQ(format.ago(31 * day), "1 mo. ago");
    EXPECT_EQ(format.ago(31 * day - 1), "4 wk. ago");
    // Two months back is 31 October, in winter already; three months back, 30 September, has summer time.
    EXPECT_EQ(format.ago(92 * day), "2 mo. ago");
    EXPECT_EQ(format.ago(92 * day + hour), "3 mo. ago");
    EXPECT_EQ(formatFor("en").ago(92 * day), "3 mo. ago");
}

TEST(RoostFormatAgo, CountsInTheCalendarOfTheLocale)
{
    // The first day of 2001 was 12 Dey 1379; the Persian month before has 30 days, the Gregorian 31.
    EXPECT_EQ(formatFor("en-u-ca-persian").ago(30 * day), "1 mo. ago");
    EXPECT_EQ(formatFor("fa-u-nu-latn").ago(30 * day), formatFor("fa-u-nu-latn-ca-persian").ago(30 * day));
    EXPECT_EQ(formatFor("fa-u-ca-gregory").ago(30 * day), "۴ هفته پیش");
    EXPECT_EQ(formatFor("en-u-ca-japanese").ago(366 * day), "1 yr. ago");
    EXPECT_EQ(formatFor("en-u-ca-japanese").ago(100 * 365.25 * day), "100 yr. ago") << "across eras";
}

TEST(RoostFormatAgo, WritesEndlessAgesToo)
{
    const RoostFormat format = formatFor("en");
    EXPECT_EQ(format.ago(1e300), format.ago(std::numeric_limits<double>::infinity()));
    for (const char* locale :
         {"en", "en-u-ca-persian", "ar-SA-u-nu-latn", "en-u-ca-hebrew", "en-u-ca-chinese"}) {
        EXPECT_TRUE(std::regex_search(formatFor(locale).ago(1e300), std::regex{"[0-9]{2,3}[,٬][0-9]{3}"}))
            << locale << ": " << formatFor(locale).ago(1e300);
    }
}

TEST(RoostFormatAgo, NeverCountsNone)
{
    std::mt19937_64 random{4};
    std::uniform_real_distribution<double> exponent{std::log(60.0), std::log(1e11)};
    for (const char* zone : {"UTC", "America/New_York", "Asia/Kathmandu", "Pacific/Apia"}) {
        const RoostFormat format = formatFor("en", zone);
        for (int round = 0; round < 5'000; ++round) {
            const double seconds = std::max(60.0, std::exp(exponent(random)));
            const std::string text = format.ago(seconds);
            ASSERT_TRUE(
                std::regex_match(text, std::regex{"[1-9][0-9,]* (min\\.|hr\\.|days?|wk\\.|mo\\.|yr\\.) ago"}))
                << seconds << ": " << text;
        }
    }
}

} // namespace
} // namespace roost
