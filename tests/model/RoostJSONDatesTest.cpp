#include "model/RoostJSON.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace roost::RoostJSON {
namespace {

using namespace std::chrono;
using namespace std::chrono_literals;

struct Case {
    std::string_view text;
    Date date;
};

Date utc(year_month_day day, milliseconds time = 0ms) { return Date{sys_days{day}} + time; }

/// `value` with zeros in front, `width` digits in all.
std::string digits(int value, std::size_t width)
{
    const std::string text = std::to_string(value);
    return std::string(width - text.size(), '0') + text;
}

TEST(ParseDate, TakesZWithAndWithoutAFraction)
{
    const Date second = utc(2025y / January / 2, 3h + 4min + 5s);
    EXPECT_EQ(parseDate("2025-01-02T03:04:05Z"), second);
    EXPECT_EQ(parseDate("2025-01-02T03:04:05.678Z"), second + 678ms);
}

TEST(ParseDate, TakesOffsetsWithAndWithoutAColon)
{
    const Case cases[]{
        {"2025-01-02T03:04:05+0100", utc(2025y / January / 2, 2h + 4min + 5s)},
        {"2025-01-02T03:04:05+01:00", utc(2025y / January / 2, 2h + 4min + 5s)},
        {"2025-01-02T03:04:05.5-0930", utc(2025y / January / 2, 12h + 34min + 5500ms)},
        {"2025-01-02T03:04:05-09:30", utc(2025y / January / 2, 12h + 34min + 5s)},
        {"2025-01-02T03:04:05+00:00", utc(2025y / January / 2, 3h + 4min + 5s)},
        {"2025-01-02T03:04:05-0000", utc(2025y / January / 2, 3h + 4min + 5s)},
        {"2025-01-02T03:04:05+05:45", utc(2025y / January / 1, 21h + 19min + 5s)},
        {"2024-12-31T23:30:00-0100", utc(2025y / January / 1, 30min)},
        {"2025-03-01T00:30:00+23:59", utc(2025y / February / 28, 31min)},
        {"2024-02-29T23:59:00-23:59", utc(2024y / March / 1, 23h + 58min)},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parseDate(c.text), c.date) << c.text;
    }
}

TEST(ParseDate, TakesEveryTimeOfTheDay)
{
    for (int second = 0; second < 86'400; ++second) {
        const std::string text = "2025-01-02T" + digits(second / 3600, 2) + ":" +
                                 digits(second / 60 % 60, 2) + ":" + digits(second % 60, 2) + "Z";
        ASSERT_EQ(parseDate(text), utc(2025y / January / 2, seconds{second})) << text;
    }
}

TEST(ParseDate, KnowsTheLengthOfEveryMonth)
{
    constexpr int lengths[]{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month) {
        for (int day = 0; day <= 99; ++day) {
            const std::string text = "2025-" + digits(month, 2) + "-" + digits(day, 2) + "T00:00:00Z";
            const bool exists = day >= 1 && day <= lengths[month - 1];
            ASSERT_EQ(parseDate(text).has_value(), exists) << text;
        }
    }
}

TEST(ParseDate, KnowsLeapYears)
{
    for (int year = 0; year <= 9999; ++year) {
        const std::string text = digits(year, 4) + "-02-29T00:00:00Z";
        const bool leaps = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        ASSERT_EQ(parseDate(text).has_value(), leaps) << text;
    }
    EXPECT_FALSE(parseDate("1900-02-29T00:00:00Z"));
    EXPECT_EQ(parseDate("2000-02-29T00:00:00Z"), utc(2000y / February / 29));
    EXPECT_EQ(parseDate("2024-02-29T00:00:00Z"), utc(2024y / February / 29));
}

TEST(ParseDate, RoundsAFractionOfAnyLengthToTheNearestMillisecond)
{
    const Case cases[]{
        {"1970-01-01T00:00:01.0Z", Date{1000ms}},
        {"1970-01-01T00:00:01.1Z", Date{1100ms}},
        {"1970-01-01T00:00:01.01Z", Date{1010ms}},
        {"1970-01-01T00:00:01.001Z", Date{1001ms}},
        {"1970-01-01T00:00:01.0004Z", Date{1000ms}},
        {"1970-01-01T00:00:01.0005Z", Date{1001ms}},
        {"1970-01-01T00:00:01.00049999999999999999999999999999999999Z", Date{1000ms}},
        {"1970-01-01T00:00:01.0005000000000000000000000000000000000000Z", Date{1001ms}},
        {"1970-01-01T00:00:01.9994Z", Date{1999ms}},
        {"1970-01-01T00:00:01.9995Z", Date{2000ms}},
        {"1970-01-01T00:00:01.9999999999999999999999999999999999999999Z", Date{2000ms}},
        {"1969-12-31T23:59:59.9996Z", Date{0ms}},
        {"1969-12-31T23:59:58.0006Z", Date{-1999ms}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parseDate(c.text), c.date) << c.text;
    }
    for (std::size_t count = 1; count <= 40; ++count) {
        const std::string fraction = "." + std::string(count, '1') + "Z";
        EXPECT_EQ(parseDate("2025-01-02T03:04:05" + fraction),
                  utc(2025y / January / 2, 3h + 4min + 5s +
                                               (count == 1   ? 100ms
                                                : count == 2 ? 110ms
                                                             : 111ms)))
            << fraction;
    }
}

TEST(ParseDate, CarriesARoundedFractionThroughToTheNextYear)
{
    EXPECT_EQ(parseDate("2024-12-31T23:59:59.9995Z"), utc(2025y / January / 1));
    EXPECT_EQ(parseDate("2023-02-28T23:59:59.99951Z"), utc(2023y / March / 1));
    EXPECT_EQ(parseDate("2024-02-28T23:59:59.9999+0000"), utc(2024y / February / 29));
    EXPECT_EQ(parseDate("2024-12-31T18:29:59.9996-05:30"), utc(2025y / January / 1));
}

TEST(ParseDate, TakesALeapSecondOnlyAtTheEndOfADayInUtc)
{
    const Date midnight = utc(2017y / January / 1);
    EXPECT_EQ(parseDate("2016-12-31T23:59:60Z"), midnight);
    EXPECT_EQ(parseDate("2016-12-31T23:59:60.75Z"), midnight);
    EXPECT_EQ(parseDate("2017-01-01T00:59:60+0100"), midnight);
    EXPECT_EQ(parseDate("2016-12-31T18:29:60-05:30"), midnight);
    for (const char* text :
         {"2016-12-31T23:58:60Z", "2016-12-31T22:59:60Z", "2017-01-01T00:00:60Z", "2016-12-31T23:59:60+0100",
          "2016-12-31T23:59:60-0001", "2016-12-31T23:59:61Z"}) {
        EXPECT_FALSE(parseDate(text)) << text;
    }
}

TEST(ParseDate, KeepsToTheYears0To9999InUtc)
{
    EXPECT_EQ(parseDate("0000-01-01T00:00:00Z"), utc(0y / January / 1));
    EXPECT_EQ(parseDate("9999-12-31T23:59:59.999Z"), utc(9999y / December / 31, 24h - 1ms));
    EXPECT_EQ(parseDate("9999-12-31T23:59:59.9994Z"), utc(9999y / December / 31, 24h - 1ms));
    EXPECT_EQ(parseDate("0000-01-01T00:59:00+00:59"), utc(0y / January / 1));
    for (const char* text :
         {"0000-01-01T00:00:00+00:01", "0000-01-01T00:58:59.999+00:59", "9999-12-31T23:59:59.9995Z",
          "9999-12-31T23:59:00-00:01", "9999-12-31T23:59:60Z"}) {
        EXPECT_FALSE(parseDate(text)) << text;
    }
}

TEST(ParseDate, RefusesEveryOtherForm)
{
    constexpr std::string_view refused[]{
        "",
        "Z",
        "T",
        "now",
        "2025",
        "2025-01",
        "2025-01-02",
        "2025-01-02Z",
        "2025-01-02T",
        "2025-01-02TZ",
        "2025-01-02T03Z",
        "2025-01-02T03:04Z",
        "2025-01-02T03:04:Z",
        "2025-01-02T03:04:05",
        "2025-01-02T03:04:05.678",
        "2025-01-02 03:04:05Z",
        "2025-01-02  03:04:05Z",
        "2025-01-02_03:04:05Z",
        "2025-01-02t03:04:05Z",
        "2025-01-02T03:04:05z",
        "2025-01-02t03:04:05z",
        "2025-01-02T03:04:05,678Z",
        "2025-01-02T03:04:05.Z",
        "2025-01-02T03:04:05.+0100",
        "2025-01-02T03:04:05.6 Z",
        "2025-01-02T03:04:05.-5Z",
        "2025-01-02T03:04:05.5.5Z",
        "2025-01-02T03:04:05 Z",
        "2025-01-02T03:04:05 +0100",
        " 2025-01-02T03:04:05Z",
        "2025-01-02T03:04:05Z ",
        "2025-01-02T03:04:05Z\n",
        "2025-01-02T03:04:05ZZ",
        "2025-01-02T03:04:05Z+0100",
        "2025-01-02T03:04:05+0100Z",
        "2025-01-02T03:04:05+1",
        "2025-01-02T03:04:05+01",
        "2025-01-02T03:04:05+010",
        "2025-01-02T03:04:05+01:",
        "2025-01-02T03:04:05+01:0",
        "2025-01-02T03:04:05+1:00",
        "2025-01-02T03:04:05+01::00",
        "2025-01-02T03:04:05+01:000",
        "2025-01-02T03:04:05+01:00:00",
        "2025-01-02T03:04:05+24:00",
        "2025-01-02T03:04:05+2400",
        "2025-01-02T03:04:05-0060",
        "2025-01-02T03:04:05+-100",
        "2025-01-02T03:04:05--0100",
        "2025-01-02T03:04:05\u22120100",
        "2025-01-02T03:04:05GMT",
        "2025-01-02T03:04:05UTC",
        "2025-01-02T24:00:00Z",
        "2025-01-02T24:00:01Z",
        "2025-01-02T25:00:00Z",
        "2025-01-02T99:00:00Z",
        "2025-01-02T03:60:00Z",
        "2025-01-02T03:99:00Z",
        "2025-01-02T03:04:60Z",
        "2025-01-02T03:04:61Z",
        "2025-01-02T03:04:99Z",
        "2025-00-02T03:04:05Z",
        "2025-13-02T03:04:05Z",
        "2025-99-02T03:04:05Z",
        "2025-01-00T03:04:05Z",
        "2025-02-30T03:04:05Z",
        "2025-1-02T03:04:05Z",
        "2025-01-2T03:04:05Z",
        "2025-01-02T3:04:05Z",
        "2025-01-02T03:4:05Z",
        "2025-01-02T03:04:5Z",
        "25-01-02T03:04:05Z",
        "025-01-02T03:04:05Z",
        "02025-01-02T03:04:05Z",
        "12025-01-02T03:04:05Z",
        "+2025-01-02T03:04:05Z",
        "-2025-01-02T03:04:05Z",
        "+002025-01-02T03:04:05Z",
        "20250102T030405Z",
        "2025-01-02T030405Z",
        "20250102T03:04:05Z",
        "2025/01/02T03:04:05Z",
        "2025.01.02T03:04:05Z",
        "2025-01-02T03.04.05Z",
        "2025-W01-4T03:04:05Z",
        "2025-002T03:04:05Z",
        "02-01-2025T03:04:05Z",
        "2025-+1-02T03:04:05Z",
        "2025-01-02T+3:04:05Z",
        "2025-01-02T03:04:+5Z",
        "202a-01-02T03:04:05Z",
        "2025-0x-02T03:04:05Z",
        "2025-01-02T03:0b:05Z",
        "1735787045",
        "1735787045.678",
        "Thu, 02 Jan 2025 03:04:05 GMT",
        "Thu Jan  2 03:04:05 2025",
        "\u0662\u0660\u0662\u0665-01-02T03:04:05Z",
        "\uFF12025-01-02T03:04:05Z",
        "2025-01-02T03:04:05\uFF3A",
        "\uFEFF2025-01-02T03:04:05Z",
    };
    for (const std::string_view text : refused) {
        EXPECT_FALSE(parseDate(text)) << text;
    }
    EXPECT_FALSE(parseDate(std::string_view{"2025-01-02T03:04:05Z\0", 21}));
    EXPECT_FALSE(parseDate(std::string_view{"2025-01-02T03:04:05\0Z", 21}));
    EXPECT_FALSE(parseDate(std::string_view{"\0", 1}));
}

TEST(ParseDate, RefusesEveryTextThatIsOneCharacterAwayInItsSeparators)
{
    const std::string good = "2025-01-02T03:04:05.678Z";
    ASSERT_TRUE(parseDate(good));
    for (std::size_t i = 0; i < good.size(); ++i) {
        std::string shorter = good;
        shorter.erase(i, 1);
        const bool isFractionDigit = i > 19 && i < 23;
        EXPECT_EQ(parseDate(shorter).has_value(), isFractionDigit) << shorter;
        for (int byte = 0; byte < 256; ++byte) {
            std::string other = good;
            other[i] = static_cast<char>(byte);
            const bool isDigit = byte >= '0' && byte <= '9';
            const bool wasDigit = good[i] >= '0' && good[i] <= '9';
            if (other != good && !(isDigit && wasDigit)) {
                EXPECT_FALSE(parseDate(other)) << i << " " << byte;
            }
        }
    }
}

TEST(ParseDate, ReadsAMegabyteOfDigitsWithoutTrouble)
{
    const std::string nines(1'000'000, '9');
    EXPECT_EQ(parseDate("2024-12-31T23:59:59." + nines + "Z"), utc(2025y / January / 1));
    EXPECT_FALSE(parseDate(nines));
    EXPECT_FALSE(parseDate("2024-12-31T23:59:59." + nines));
}

TEST(FormatDate, WritesMillisecondsAndZ)
{
    EXPECT_EQ(formatDate(utc(2025y / January / 2, 500ms)), "2025-01-02T00:00:00.500Z");
    EXPECT_EQ(formatDate(utc(2025y / January / 2)), "2025-01-02T00:00:00.000Z");
    EXPECT_EQ(formatDate(Date{-1ms}), "1969-12-31T23:59:59.999Z");
    EXPECT_EQ(formatDate(utc(7y / August / 9, 1h + 2min + 3s + 4ms)), "0007-08-09T01:02:03.004Z");
}

TEST(FormatDate, GivesTheNearestInstantThatCanBeReadForOneBeyondTheYears0To9999)
{
    EXPECT_EQ(formatDate(utc(10000y / January / 1)), "9999-12-31T23:59:59.999Z");
    EXPECT_EQ(formatDate(utc(0y / January / 1, -1ms)), "0000-01-01T00:00:00.000Z");
    EXPECT_EQ(formatDate(Date::max()), "9999-12-31T23:59:59.999Z");
    EXPECT_EQ(formatDate(Date::min()), "0000-01-01T00:00:00.000Z");
}

TEST(FormatDate, IsReadBackExactlyForAMillionInstantsOfTheYears0To9999)
{
    const Date first = utc(0y / January / 1);
    const auto span = static_cast<std::uint64_t>((utc(10000y / January / 1) - first).count());
    std::mt19937_64 random{20250301};
    for (int i = 0; i < 1'000'000; ++i) {
        const Date date = first + milliseconds{static_cast<std::int64_t>(random() % span)};
        const std::optional<Date> read = parseDate(formatDate(date));
        ASSERT_EQ(read, date) << formatDate(date);
    }
}

TEST(FormatDate, IsReadBackExactlyForEveryMillisecondAroundTheTurnOfAYear)
{
    for (milliseconds past = -30s; past <= 30s; past += 1ms) {
        const Date date = utc(2025y / January / 1, past);
        ASSERT_EQ(parseDate(formatDate(date)), date);
    }
}

} // namespace
} // namespace roost::RoostJSON
