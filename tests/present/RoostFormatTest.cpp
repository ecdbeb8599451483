#include "present/RoostFormat.h"

#include "tests/present/Formats.h"

#include <gtest/gtest.h>
#include <unicode/uclean.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <thread>
#include <vector>

namespace roost {
namespace {

using test::formatFor;
using test::moment;

constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();

TEST(RoostFormat, WritesCompactCountsFromAThousandOn)
{
    const RoostFormat format = formatFor("en");
    EXPECT_EQ(format.compact(999), format.full(999));
    EXPECT_EQ(format.compact(950), "950");
    EXPECT_EQ(format.compact(1000), "1K");
    EXPECT_EQ(format.compact(1500), "1.5K");
    EXPECT_EQ(format.compact(-1500), "-1.5K");
    EXPECT_EQ(format.compact(15'000), "15K");
    EXPECT_EQ(format.compact(15'200), "15.2K");
    EXPECT_EQ(format.compact(150'000), "150K");
    EXPECT_EQ(format.compact(2'300'000), "2.3M");
    EXPECT_EQ(format.compact(0), "0");
    EXPECT_EQ(format.compact(-999), "-999");
}

TEST(RoostFormat, RoundsHalvesToTheEvenNeighbour)
{
    const RoostFormat format = formatFor("en");
    EXPECT_EQ(format.compact(1250), "1.2K");
    EXPECT_EQ(format.compact(1350), "1.4K");
    EXPECT_EQ(format.compact(99'949), "99.9K");
    EXPECT_EQ(format.compact(99'950), "100K");
    EXPECT_EQ(format.compact(100'000), "100K");
    EXPECT_EQ(format.compact(100'500), "100K");
    EXPECT_EQ(format.compact(101'500), "102K");
    EXPECT_EQ(format.compact(999'499), "999K");
    EXPECT_EQ(format.compact(999'500), "1M");
    EXPECT_EQ(format.percent(0.125), "12%");
    EXPECT_EQ(format.percent(0.135), "14%");
}

TEST(RoostFormat, CountsDecimalsInThousandsAlsoWhereWordsStandForMyriadsAndLakhs)
{
    // CLDR: ja 10000 "0万", hi 1000 "0 हज़ार" and 100000 "0 लाख", en-IN 100000 "0L" and 10000000 "0Cr".
    EXPECT_EQ(formatFor("ja").compact(123'456), "12万");
    EXPECT_EQ(formatFor("ja").compact(12'345), "1.2万");
    EXPECT_EQ(formatFor("ja").compact(1'234'567), "123.5万");
    EXPECT_EQ(formatFor("hi").compact(123'456), "1\u00A0लाख");
    EXPECT_EQ(formatFor("hi").compact(12'345), "12.3\u00A0हज़ार");
    EXPECT_EQ(formatFor("en-IN").compact(150'000), "2L");
    EXPECT_EQ(formatFor("en-IN").compact(15'500'000), "1.6Cr");
}

TEST(RoostFormat, WritesTheGreatestCounts)
{
    const RoostFormat format = formatFor("en");
    EXPECT_EQ(format.compact(greatest), "9,223,372T");
    EXPECT_EQ(format.compact(-greatest), "-9,223,372T");
    EXPECT_EQ(format.full(greatest), "9,223,372,036,854,775,807");
    EXPECT_EQ(format.full(least), "-9,223,372,036,854,775,808");
    EXPECT_EQ(format.signedCount(least), "-9,223,372,036,854,775,808");
}

TEST(RoostFormatDeathTest, StopsAtTheCompactFormOfTheLeastInteger)
{
    const RoostFormat format = formatFor("en");
    EXPECT_DEATH(format.compact(least), "no magnitude");
    EXPECT_EQ(format.compact(least + 1), "-9,223,372T");
}

TEST(RoostFormat, SignsChangesAndGroupsThem)
{
    const RoostFormat format = formatFor("en");
    EXPECT_EQ(format.signedCount(12), "+12");
    EXPECT_EQ(format.signedCount(-3), "-3");
    EXPECT_EQ(format.signedCount(0), "0");
    EXPECT_EQ(format.signedCount(12'345), "+12,345");
    EXPECT_EQ(formatFor("sv").signedCount(-3), "−3") << "the sign of Swedish is U+2212";
}

TEST(RoostFormat, WritesWholePercentages)
{
    const RoostFormat format = formatFor("en");
    EXPECT_EQ(format.percent(0.25), "25%");
    EXPECT_EQ(format.percent(0.254), "25%");
    EXPECT_EQ(format.percent(12.345), "1,234%");
    EXPECT_EQ(format.signedPercent(0.12), "+12%");
    EXPECT_EQ(format.signedPercent(-0.04), "-4%");
    EXPECT_EQ(format.signedPercent(0), "0%");
    EXPECT_EQ(format.signedPercent(-0.0), "0%");
    EXPECT_EQ(format.signedPercent(-0.001), "0%");
    EXPECT_EQ(format.percent(std::nan("")), "NaN%");
    EXPECT_EQ(format.percent(std::numeric_limits<double>::infinity()), "∞%");
    EXPECT_EQ(formatFor("de").percent(0.25), "25\u00A0%");
    EXPECT_EQ(formatFor("tr").percent(0.25), "%25");
}

TEST(RoostFormat, WritesTheClockAsTheLocaleReadsIt)
{
    const Date afternoon = moment("2026-03-04T15:05:00Z");
    EXPECT_EQ(formatFor("en-US").timeText(afternoon), "3:05\u202FPM") << "with the narrow no-break space";
    EXPECT_EQ(formatFor("de").timeText(afternoon), "15:05");
    EXPECT_EQ(formatFor("en-GB").timeText(moment("2026-03-04T09:05:00Z")), "09:05");
    EXPECT_EQ(formatFor("es").timeText(moment("2026-03-04T09:05:00Z")), "9:05");
    EXPECT_EQ(formatFor("en-US-u-hc-h23").timeText(afternoon), "15:05");
    EXPECT_EQ(formatFor("de-u-hc-h12").timeText(afternoon), "3:05\u202FPM");
}

TEST(RoostFormat, TellsWhoUsesTwelveHours)
{
    EXPECT_TRUE(formatFor("en-US").usesTwelveHour());
    EXPECT_TRUE(formatFor("ko").usesTwelveHour());
    EXPECT_TRUE(formatFor("de-u-hc-h12").usesTwelveHour());
    EXPECT_FALSE(formatFor("en-US-u-hc-h23").usesTwelveHour());
    EXPECT_FALSE(formatFor("de").usesTwelveHour());
    EXPECT_FALSE(formatFor("pt_BR").usesTwelveHour());
    EXPECT_FALSE(formatFor("en-US-u-rg-gbzzzz").usesTwelveHour()) << "by the customs of another region";
}

TEST(RoostFormat, UsesTheDigitsThatTheLocaleAsksForInEveryText)
{
    const RoostFormat format = formatFor("en-u-nu-arab");
    EXPECT_EQ(format.compact(1500), "١٫٥K");
    EXPECT_EQ(format.full(12'345), "١٢٬٣٤٥");
    EXPECT_EQ(format.ago(300), "٥ min. ago");
    EXPECT_EQ(format.timeText(moment("2026-03-04T15:05:00Z")), "٣:٠٥\u202FPM");
    EXPECT_EQ(format.queueTime(moment("2026-11-14T12:00:00Z"), moment("2026-11-01T12:00:00Z")).dayLabel,
              "Nov ١٤");
    EXPECT_EQ(formatFor("ar-EG-u-nu-latn").full(12'345), "12,345");
}

TEST(RoostFormat, ToldByOneCopyIsToldByAll)
{
    const RoostFormat format = formatFor("pl");
    const std::vector<RoostFormat> copies(2, format);
    RoostFormat other = formatFor("en");
    other = copies.back();
    EXPECT_EQ(other.locale(), "pl");
    EXPECT_EQ(other.compact(2'300'000), format.compact(2'300'000));
}

TEST(RoostFormat, SaysTheSameOnSeveralThreadsAtOnce)
{
    const auto texts = [](const RoostFormat& format, int round) {
        const Date date = moment("2026-03-04T15:05:00Z") + std::chrono::hours{round};
        const auto queued = format.queueTime(date, date - std::chrono::hours{72});
        return format.compact(1000 * round) + format.full(round) + format.signedPercent(round / 100.0) +
               format.ago(60.0 * round) + queued.dayLabel + queued.timeLabel;
    };
    constexpr int rounds = 200;
    std::vector<std::string> expected;
    for (int round = 0; round < rounds; ++round) {
        expected.push_back(texts(formatFor("de"), round));
    }

    const RoostFormat shared = formatFor("de");
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 8; ++thread) {
            threads.emplace_back([&, format = shared] {
                for (int round = 0; round < rounds; ++round) {
                    wrong += texts(format, round) == expected.at(static_cast<std::size_t>(round)) ? 0 : 1;
                }
            });
        }
    }
    EXPECT_EQ(wrong, 0);
}

std::atomic<int> allocationsOfIcu = 0;

TEST(RoostFormat, LeavesIcuAloneUntilTheFirstText)
{
    UErrorCode status = U_ZERO_ERROR;
    u_setMemoryFunctions(
        nullptr,
        [](const void*, std::size_t size) {
            ++allocationsOfIcu;
            return std::malloc(size);
        },
        [](const void*, void* memory, std::size_t size) {
            ++allocationsOfIcu;
            return std::realloc(memory, size);
        },
        [](const void*, void* memory) { std::free(memory); }, &status);
    ASSERT_TRUE(U_SUCCESS(status));

    const RoostFormat format = formatFor("sw", "Africa/Nairobi");
    const std::vector<RoostFormat> copies(2, format);
    const RoostFormat own = RoostFormat::system();
    EXPECT_FALSE(copies.back().locale().empty() || own.locale().empty());
    EXPECT_EQ(allocationsOfIcu, 0);
    EXPECT_EQ(copies.back().full(1), "1");
    EXPECT_GT(allocationsOfIcu, 0);
}

} // namespace
} // namespace roost
