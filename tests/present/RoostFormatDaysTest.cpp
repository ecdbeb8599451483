#include "present/RoostFormat.h"
#include "tests/present/Formats.h"

#include <gtest/gtest.h>

#include <random>

namespace roost {
namespace {

using test::formatFor;
using test::moment;
using namespace std::chrono_literals;
using QueueTime = RoostFormat::QueueTime;

std::int64_t offset(const RoostFormat& format, const std::string& post, const std::string& now)
{
    return format.queueTime(moment(post), moment(now)).dayOffset;
}

TEST(RoostFormatQueueTime, GoesFromTheWordsOverWeekdaysToDates)
{
    const RoostFormat format = formatFor("en-GB");
    const Date now = moment("2026-11-04T10:00:00Z"); // a Wednesday
    const auto queued = [&](std::chrono::hours ahead) { return format.queueTime(now + ahead, now); };
    EXPECT_EQ(queued(0h), (QueueTime{"Today", "10:00", 0}));
    EXPECT_EQ(queued(13h), (QueueTime{"Today", "23:00", 0}));
    EXPECT_EQ(queued(14h), (QueueTime{"Tomorrow", "00:00", 1}));
    EXPECT_EQ(queued(24h), (QueueTime{"Tomorrow", "10:00", 1}));
    EXPECT_EQ(queued(48h), (QueueTime{"Fri", "10:00", 2}));
    EXPECT_EQ(queued(6 * 24h), (QueueTime{"Tue", "10:00", 6}));
    EXPECT_EQ(queued(7 * 24h), (QueueTime{"11 Nov", "10:00", 7}));
    EXPECT_EQ(queued(400 * 24h), (QueueTime{"9 Dec", "10:00", 400}));
}

TEST(RoostFormatQueueTime, SaysTodayOfThePastAndOfTheWholeDay)
{
    const RoostFormat format = formatFor("en-GB");
    EXPECT_EQ(format.queueTime(moment("2026-11-04T23:59:00Z"), moment("2026-11-04T00:01:00Z")),
              (QueueTime{"Today", "23:59", 0}));
    EXPECT_EQ(format.queueTime(moment("2026-11-03T10:00:00Z"), moment("2026-11-04T10:00:00Z")),
              (QueueTime{"Today", "10:00", -1}));
    EXPECT_EQ(format.queueTime(moment("2025-11-04T10:00:00Z"), moment("2026-11-04T10:00:00Z")).dayOffset,
              -365);
}

TEST(RoostFormatQueueTime, NamesTheDayInTheLanguageOfTheLocale)
{
    const Date now = moment("2026-11-04T10:00:00Z"); // a Wednesday
    const auto label = [&](const char* locale, std::chrono::hours ahead) {
        return formatFor(locale).queueTime(now + ahead, now).dayLabel;
    };
    EXPECT_EQ(label("de_AT", -48h), "Heute");
    EXPECT_EQ(label("de_AT", 0h), "Heute");
    EXPECT_EQ(label("de_AT", 24h), "Morgen");
    EXPECT_EQ(label("de", 48h), "Fr");
    EXPECT_EQ(label("de", 240h), "14. Nov.");
    EXPECT_EQ(label("pt_BR", 24h), "Amanhã");
    EXPECT_EQ(label("ja-JP-u-ca-japanese", 0h), "今日");
    EXPECT_EQ(label("iw_IL", 24h), "מחר");
    EXPECT_EQ(label("ca", 24h), "Tomorrow") << "there are no Catalan texts";
    EXPECT_EQ(label("ca", 48h), "dv.");
}

TEST(RoostFormatQueueTime, SeparatesDaysByOneZoneAndPrintsByTheOther)
{
    const RoostFormat format{
        {.locale = "en-GB", .calendarTimeZone = "Asia/Tokyo", .timeZone = "America/Los_Angeles"}};
    // 23:30 and 00:30 in Tokyo.
    EXPECT_EQ(format.queueTime(moment("2026-06-10T15:30:00Z"), moment("2026-06-10T14:30:00Z")),
              (QueueTime{"Tomorrow", "08:30", 1}));
    // Three days ahead in Tokyo, where that day is a Sunday; the day that is printed is Los Angeles's.
    EXPECT_EQ(format.queueTime(moment("2026-06-13T15:30:00Z"), moment("2026-06-10T16:00:00Z")),
              (QueueTime{"Sat", "08:30", 3}));
}

TEST(RoostFormatQueueTime, CountsDaysOverTheClocksGoingForward)
{
    const RoostFormat format = formatFor("de", "Europe/Berlin");
    // On 29 March 2026 the clocks go from 2 to 3 o'clock: that day has 23 hours.
    EXPECT_EQ(offset(format, "2026-03-29T00:00:00+02:00", "2026-03-28T23:59:59+01:00"), 0) << "23:00 before";
    EXPECT_EQ(offset(format, "2026-03-29T00:00:00+01:00", "2026-03-28T23:59:59+01:00"), 1);
    EXPECT_EQ(offset(format, "2026-03-30T00:00:00+02:00", "2026-03-29T00:00:00+01:00"), 1);
    EXPECT_EQ(offset(format, "2026-03-29T23:59:59+02:00", "2026-03-29T00:00:00+01:00"), 0);
    EXPECT_EQ(offset(format, "2026-04-04T12:00:00+02:00", "2026-03-28T12:00:00+01:00"), 7);
    EXPECT_EQ(format.timeText(moment("2026-03-29T01:30:00+01:00") + 1h), "03:30");
}

TEST(RoostFormatQueueTime, CountsDaysOverTheClocksGoingBack)
{
    const RoostFormat format = formatFor("de", "Europe/Berlin");
    // On 25 October 2026 the clocks go from 3 to 2 o'clock: that day has 25 hours.
    EXPECT_EQ(offset(format, "2026-10-25T23:59:59+01:00", "2026-10-25T00:00:00+02:00"), 0);
    EXPECT_EQ(offset(format, "2026-10-26T00:00:00+01:00", "2026-10-25T00:00:00+02:00"), 1);
    EXPECT_EQ(offset(format, "2026-10-31T12:00:00+01:00", "2026-10-24T12:00:00+02:00"), 7);
    EXPECT_EQ(format.timeText(moment("2026-10-25T02:30:00+02:00")), "02:30");
    EXPECT_EQ(format.timeText(moment("2026-10-25T02:30:00+01:00")), "02:30");
}

TEST(RoostFormatQueueTime, CountsDaysWhereTheClocksChangeAtMidnight)
{
    // In Cairo midnight of 24 April 2026 does not come, in Havana that of 1 November 2026 comes twice.
    const RoostFormat cairo = formatFor("en", "Africa/Cairo");
    EXPECT_EQ(offset(cairo, "2026-04-24T01:00:00+03:00", "2026-04-23T23:59:59+02:00"), 1);
    EXPECT_EQ(offset(cairo, "2026-04-25T00:00:00+03:00", "2026-04-24T01:00:00+03:00"), 1);
    const RoostFormat havana = formatFor("en", "America/Havana");
    EXPECT_EQ(offset(havana, "2026-11-01T00:30:00-05:00", "2026-11-01T00:30:00-04:00"), 0);
    EXPECT_EQ(offset(havana, "2026-11-01T00:30:00-04:00", "2026-10-31T23:59:00-04:00"), 1);
    EXPECT_EQ(offset(havana, "2026-11-02T00:00:00-05:00", "2026-11-01T00:30:00-05:00"), 1);
}

TEST(RoostFormatQueueTime, LeavesOutTheDayThatSamoaSkipped)
{
    const RoostFormat samoa = formatFor("en-GB", "Pacific/Apia");
    const std::string thursday = "2011-12-29T12:00:00-10:00";
    EXPECT_EQ(samoa.queueTime(moment("2011-12-31T12:00:00+14:00"), moment(thursday)),
              (QueueTime{"Tomorrow", "12:00", 1}));
    EXPECT_EQ(offset(samoa, "2011-12-29T23:59:59-10:00", thursday), 0);
    EXPECT_EQ(offset(samoa, "2011-12-31T00:00:00+14:00", "2011-12-29T23:59:59-10:00"), 1);
    EXPECT_EQ(offset(samoa, "2012-01-01T12:00:00+14:00", thursday), 2);
    for (int earlier = 1; earlier < 10; ++earlier) {
        const Date now = moment(thursday) - earlier * 24h;
        EXPECT_EQ(samoa.queueTime(moment("2011-12-31T12:00:00+14:00"), now).dayOffset, earlier + 1);
    }
    EXPECT_EQ(offset(samoa, thursday, "2011-12-31T12:00:00+14:00"), -1);
}

TEST(RoostFormatQueueTime, KnowsZonesOfHalfAndQuarterHours)
{
    const RoostFormat kolkata = formatFor("en-GB", "Asia/Kolkata");
    EXPECT_EQ(kolkata.queueTime(moment("2026-07-01T18:30:00Z"), moment("2026-07-01T18:29:59Z")),
              (QueueTime{"Tomorrow", "00:00", 1}));
    EXPECT_EQ(formatFor("en-GB", "Asia/Kathmandu").timeText(moment("2026-07-01T18:15:00Z")), "00:00");
    // Lord Howe Island goes back by half an hour.
    const RoostFormat lordHowe = formatFor("en-GB", "Australia/Lord_Howe");
    EXPECT_EQ(offset(lordHowe, "2026-04-06T00:00:00+10:30", "2026-04-05T00:00:00+11:00"), 1);
}

TEST(RoostFormatQueueTime, GoesOverTheEndOfTheYear)
{
    const RoostFormat format = formatFor("en-GB", "Europe/London");
    EXPECT_EQ(format.queueTime(moment("2027-01-01T00:00:00Z"), moment("2026-12-31T23:59:59Z")),
              (QueueTime{"Tomorrow", "00:00", 1}));
    EXPECT_EQ(format.queueTime(moment("2027-01-03T09:00:00Z"), moment("2026-12-31T12:00:00Z")),
              (QueueTime{"Sun", "09:00", 3}));
    EXPECT_EQ(format.queueTime(moment("2027-01-07T09:00:00Z"), moment("2026-12-31T12:00:00Z")),
              (QueueTime{"7 Jan", "09:00", 7}));
    EXPECT_EQ(offset(format, "2028-03-01T00:00:00Z", "2028-02-28T00:00:00Z"), 2) << "a leap year";
}

TEST(RoostFormatQueueTime, AnswersForTheEndsOfTime)
{
    const RoostFormat format = formatFor("en", "Europe/Berlin");
    const Date now = moment("2026-11-04T10:00:00Z");
    EXPECT_GT(format.queueTime(Date::max(), now).dayOffset, 1'000'000'000);
    EXPECT_LT(format.queueTime(Date::min(), now).dayOffset, -1'000'000'000);
    EXPECT_FALSE(format.timeText(Date::max()).empty());
    EXPECT_EQ(format.queueTime(Date::min(), now).dayLabel, "Today");
}

TEST(RoostFormatQueueTime, CountsAsTheCalendarOfTheStandardLibraryDoesInUtc)
{
    std::mt19937_64 random{6};
    std::uniform_int_distribution<std::int64_t> milliseconds{-4'000'000'000'000, 8'000'000'000'000};
    const RoostFormat format = formatFor("en");
    for (int round = 0; round < 2'000; ++round) {
        const Date now{std::chrono::milliseconds{milliseconds(random)}};
        const Date post{std::chrono::milliseconds{milliseconds(random)}};
        const auto days =
            std::chrono::floor<std::chrono::days>(post) - std::chrono::floor<std::chrono::days>(now);
        ASSERT_EQ(format.queueTime(post, now).dayOffset, days.count());
    }
}

TEST(RoostFormatQueueTime, NeverGoesBackWhenThePostComesLater)
{
    std::mt19937_64 random{7};
    for (const char* zone :
         {"Pacific/Apia", "Africa/Cairo", "America/Havana", "Australia/Lord_Howe", "Asia/Gaza"}) {
        const RoostFormat format = formatFor("en", zone);
        const Date now = moment("2011-03-20T12:00:00Z");
        std::int64_t last = 0;
        for (Date post = now; post < now + 24h * 366; post += 20min + std::chrono::seconds{random() % 1200}) {
            const std::int64_t days = format.queueTime(post, now).dayOffset;
            ASSERT_TRUE(days == last || days == last + 1) << zone << ' ' << RoostJSON::formatDate(post);
            last = days;
            ASSERT_EQ(format.queueTime(now, post).dayOffset, -days);
        }
        EXPECT_EQ(last, 366) << zone;
    }
}

} // namespace
} // namespace roost
