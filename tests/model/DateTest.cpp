#include "model/Date.h"

#include "model/Clock.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace roost {
namespace {

using namespace std::chrono;
using namespace std::chrono_literals;

Date at(sys_days day, milliseconds time = 0ms) { return Date{day} + time; }

TEST(DayString, WritesFourDigitsOfTheYearAndTwoOfMonthAndDay)
{
    EXPECT_EQ(dayString(at(2025y / January / 2)), "2025-01-02");
    EXPECT_EQ(dayString(at(2025y / December / 31)), "2025-12-31");
    EXPECT_EQ(dayString(at(987y / October / 9)), "0987-10-09");
    EXPECT_EQ(dayString(at(0y / January / 1)), "0000-01-01");
    EXPECT_EQ(dayString(at(2000y / February / 29)), "2000-02-29");
}

TEST(DayString, ChangesAtMidnightInUtcToTheMillisecond)
{
    EXPECT_EQ(dayString(at(2025y / March / 1)), "2025-03-01");
    EXPECT_EQ(dayString(at(2025y / March / 1, -1ms)), "2025-02-28");
    EXPECT_EQ(dayString(at(2025y / March / 1, 24h - 1ms)), "2025-03-01");
    EXPECT_EQ(dayString(at(1970y / January / 1, -1ms)), "1969-12-31");
}

TEST(DayString, TakesNoNoticeOfTheZoneOfTheMachine)
{
    const Date lateInUtc = at(2025y / July / 4, 23h + 30min);
    const char* before = std::getenv("TZ");
    const std::string kept = before == nullptr ? "" : before;
    for (const char* zone : {"Pacific/Kiritimati", "Pacific/Pago_Pago", "<-11>11"}) {
        ::setenv("TZ", zone, 1);
        ::tzset();
        EXPECT_EQ(dayString(lateInUtc), "2025-07-04") << zone;
    }
    before == nullptr ? ::unsetenv("TZ") : ::setenv("TZ", kept.c_str(), 1);
    ::tzset();
}

TEST(DayString, PutsAMinusBeforeTheYearsBeforeZeroAndALongYearInFull)
{
    EXPECT_EQ(dayString(at(-1y / January / 1)), "-001-01-01");
    EXPECT_EQ(dayString(at(12345y / June / 7)), "12345-06-07");
}

TEST(DateFromSeconds, RoundsToTheNearestMillisecond)
{
    EXPECT_EQ(dateFromSeconds(0), Date{});
    EXPECT_EQ(dateFromSeconds(1.0004), Date{1000ms});
    EXPECT_EQ(dateFromSeconds(1.0006), Date{1001ms});
    EXPECT_EQ(dateFromSeconds(1.9996), Date{2000ms});
    EXPECT_EQ(dateFromSeconds(-1.0006), Date{-1001ms});
    EXPECT_EQ(dateFromSeconds(1'718'000'000.123), Date{1'718'000'000'123ms});
}

TEST(DateFromSeconds, GivesTheNearestEndForWhatNoDateHolds)
{
    constexpr double endless = std::numeric_limits<double>::infinity();
    EXPECT_EQ(dateFromSeconds(1e300), Date::max());
    EXPECT_EQ(dateFromSeconds(endless), Date::max());
    EXPECT_EQ(dateFromSeconds(-1e300), Date::min());
    EXPECT_EQ(dateFromSeconds(-endless), Date::min());
    EXPECT_EQ(dateFromSeconds(std::nan("")), Date::min());
    EXPECT_EQ(dateFromSeconds(0x1p63 / 1000), Date::max());
    EXPECT_EQ(dateFromSeconds(-0x1p63 / 1000), Date::min());
}

TEST(SecondsSince1970, ComesBackThroughDateFromSecondsForEveryMillisecondOfAFewSeconds)
{
    for (const sys_days day : {sys_days{1970y / January / 1}, sys_days{2025y / March / 1},
                               sys_days{0y / January / 1}, sys_days{9999y / December / 31}}) {
        for (milliseconds past = -2000ms; past <= 2000ms; past += 1ms) {
            const Date date = at(day, past);
            ASSERT_EQ(dateFromSeconds(secondsSince1970(date)), date) << past.count();
        }
    }
    EXPECT_EQ(secondsSince1970(Date{1500ms}), 1.5);
}

TEST(SystemClock, GoesWithTheClockOfTheMachine)
{
    const auto before = system_clock::now();
    const Date told = systemClock()();
    const auto after = system_clock::now();
    EXPECT_GE(told, floor<milliseconds>(before));
    EXPECT_LE(told, after);
}

} // namespace
} // namespace roost
