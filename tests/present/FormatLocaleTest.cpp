#include "present/FormatLocale.h"

#include "tests/present/Formats.h"
#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>

#include <random>

namespace roost {
namespace {

using test::formatFor;
using test::moment;
using test::ScopedVariable;

/// The identifier of a process whose environment says this much of locales.
std::string systemIdentifier(const std::optional<QByteArray>& all, const std::optional<QByteArray>& messages,
                             const std::optional<QByteArray>& time, const std::optional<QByteArray>& lang)
{
    const ScopedVariable first{"LC_ALL", all};
    const ScopedVariable second{"LC_MESSAGES", messages};
    const ScopedVariable third{"LC_TIME", time};
    const ScopedVariable fourth{"LANG", lang};
    return systemLocaleIdentifier();
}

TEST(FormatLocale, ReadsTagsAndIdentifiers)
{
    EXPECT_STREQ(formatLocale("pt-BR").getName(), "pt_BR");
    EXPECT_STREQ(formatLocale("pt_BR").getName(), "pt_BR");
    EXPECT_STREQ(formatLocale("zh_Hant_HK").getName(), "zh_Hant_HK");
    EXPECT_STREQ(formatLocale("en_US_u_hc_h23").getName(), "en_US@hours=h23");
    EXPECT_STREQ(formatLocale("th_TH@calendar=gregorian").getName(), "th_TH@calendar=gregorian");
    EXPECT_STREQ(formatLocale("iw").getLanguage(), "he");
    EXPECT_STREQ(formatLocale("de_AT.UTF-8").getName(), "de_AT");
    EXPECT_STREQ(formatLocale("de-AT-u-nu-a!").getLanguage(), "de");
    EXPECT_EQ(formatFor("pt_BR").compact(1'500'000), "1,5\u00A0mi");
    EXPECT_EQ(formatFor("pt_PT").compact(1'500'000), "1,5\u00A0M");
}

TEST(FormatLocale, IsEnglishForWhatNamesNoLanguage)
{
    for (const char* garbage : {"", "!", "xx", "tlh-Latn", "und", "-", "_", "@", "e", "a b c", "\xFF\xFE",
                                "999", "en-US-", "u-nu-arab", "x-private", "root"}) {
        EXPECT_STREQ(formatLocale(garbage).getLanguage(), "en") << garbage;
        EXPECT_EQ(formatFor(garbage).compact(1500), "1.5K") << garbage;
        EXPECT_EQ(formatFor(garbage).ago(300), "5 min. ago") << garbage;
    }
    EXPECT_EQ(formatFor("xx-u-hc-h23").timeText(moment("2026-03-04T15:05:00Z")), "15:05");
}

TEST(FormatLocale, DoesNotDependOnTheLocaleOfTheProcess)
{
    const icu::Locale before = icu::Locale::getDefault();
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale::getJapan(), status);
    EXPECT_EQ(formatFor("xx").compact(12'345), "12.3K");
    EXPECT_EQ(formatFor("de").compact(1'500'000), "1,5\u00A0Mio.");
    icu::Locale::setDefault(before, status);
}

TEST(FormatLocale, LeavesOutExtensionsThatNobodyKnows)
{
    EXPECT_EQ(formatFor("en-u-nu-foobar").full(12'345), "12,345");
    EXPECT_EQ(formatFor("en@numbers=foobar;hours=h23").full(12'345), "12,345");
    EXPECT_EQ(formatFor("en@numbers=foobar;hours=h23").timeText(moment("2026-03-04T15:05:00Z")), "15:05");
    EXPECT_EQ(formatFor("en-u-ca-foobar").ago(300), "5 min. ago");
    EXPECT_EQ(formatFor("de_DE@numbers=a!b").full(12'345), "12.345");
    EXPECT_EQ(formatFor("de_DE@calendar=a!b;hours=h23").full(12'345), "12.345");
    EXPECT_EQ(formatFor("de_DE@calendar=a!b;hours=h23").ago(300), formatFor("de_DE").ago(300));
    EXPECT_EQ(formatFor("de-u-hc-foobar").timeText(moment("2026-03-04T15:05:00Z")), "15:05");
}

TEST(FormatLocale, LeavesOutExtensionsThatAreOverlong)
{
    for (const char* key : {"ca", "hc", "nu", "rg"}) {
        for (const int parts : {2, 3, 5, 12}) {
            std::string identifier = std::string{"en-GB-u-"} + key;
            for (int part = 0; part < parts; ++part) {
                identifier += "-abcdefgh";
            }
            const RoostFormat format = formatFor(identifier);
            EXPECT_EQ(format.compact(1500), "1.5K") << identifier;
            EXPECT_EQ(format.ago(300), "5 min ago") << identifier;
            EXPECT_EQ(format.timeText(moment("2026-03-04T15:05:00Z")), "15:05") << identifier;
        }
    }
}

TEST(FormatLocale, SurvivesAnyIdentifier)
{
    std::mt19937 random{11};
    const std::string alphabet = "aeinsdurfhz-_@=;. 0129\xC3\xA9UNHCDE";
    const char* starts[] = {"", "en-u-nu-", "de-u-ca-", "ar@numbers=", "ja-JP-u-", "zh-", "fr_"};
    for (int round = 0; round < 300; ++round) {
        std::string identifier = starts[random() % std::size(starts)];
        for (auto length = random() % 14; length > 0; --length) {
            identifier += alphabet.at(random() % alphabet.size());
        }
        const RoostFormat format = formatFor(identifier);
        ASSERT_FALSE(format.compact(1'234'567).empty()) << identifier;
        ASSERT_FALSE(format.signedPercent(0.5).empty()) << identifier;
        ASSERT_FALSE(format.ago(1e7).empty()) << identifier;
        ASSERT_FALSE(format.timeText(Date{}).empty()) << identifier;
    }
}

TEST(FormatLocale, SurvivesEveryNumberingSystemAndCalendar)
{
    for (const char* numbers :
         {"native", "traditio", "finance", "roman", "hebr", "hanidec", "mathsanb", "latn"}) {
        const RoostFormat format = formatFor(std::string{"zh-u-nu-"} + numbers);
        EXPECT_FALSE(format.compact(1'234'567).empty()) << numbers;
        EXPECT_FALSE(format.ago(300).empty()) << numbers;
    }
    for (const char* calendar :
         {"buddhist", "chinese", "coptic", "dangi", "ethioaa", "ethiopic", "gregory", "hebrew", "indian",
          "islamic", "islamic-umalqura", "islamicc", "iso8601", "japanese", "persian", "roc"}) {
        const RoostFormat format = formatFor(std::string{"en-u-nu-latn-ca-"} + calendar);
        EXPECT_EQ(format.ago(400 * 86'400), "1 yr. ago") << calendar;
        const Date post = moment("2026-11-14T12:00:00Z");
        EXPECT_FALSE(format.queueTime(post, post - std::chrono::hours{240}).dayLabel.empty()) << calendar;
    }
}

TEST(SystemLocale, TakesTheLanguageOfTheMessages)
{
    EXPECT_EQ(systemIdentifier({}, {}, {}, "de_AT.UTF-8"), "de_AT");
    EXPECT_EQ(systemIdentifier({}, "fr_CA.UTF-8", {}, "de_AT.UTF-8"), "fr_AT") << "with the region of LANG";
    EXPECT_EQ(systemIdentifier("it_CH.UTF-8", "fr_CA.UTF-8", "en_GB", "de_AT"), "it_CH");
    EXPECT_EQ(systemIdentifier("", {}, {}, "eo"), "eo");
}

TEST(SystemLocale, TakesTheRegionOfTheTimes)
{
    EXPECT_EQ(systemIdentifier({}, {}, "de_DE.UTF-8", "en_US.UTF-8"), "en_DE");
    EXPECT_EQ(systemIdentifier({}, {}, "C.UTF-8", "en_US.UTF-8"), "en_US");
    EXPECT_FALSE(formatFor("en_DE").usesTwelveHour());
}

TEST(SystemLocale, ReadsTheScriptFromTheModifier)
{
    EXPECT_EQ(systemIdentifier({}, {}, {}, "sr_RS.UTF-8@latin"), "sr_Latn_RS");
    EXPECT_EQ(systemIdentifier({}, {}, {}, "uz_UZ@cyrillic"), "uz_Cyrl_UZ");
    EXPECT_EQ(systemIdentifier({}, {}, {}, "de_DE@euro"), "de_DE");
}

TEST(SystemLocale, IsEnglishWhereTheEnvironmentSaysNothing)
{
    EXPECT_EQ(systemIdentifier({}, {}, {}, {}), "en");
    EXPECT_EQ(systemIdentifier("C", {}, {}, "de_DE"), "en");
    EXPECT_EQ(systemIdentifier({}, {}, {}, "POSIX"), "en");
    EXPECT_EQ(systemIdentifier({}, {}, "de_DE", "C.UTF-8"), "en_DE");
}

TEST(SystemFormat, SaysWhatTheMachineSays)
{
    const ScopedVariable all{"LC_ALL", "de_DE.UTF-8"};
    const ScopedVariable zone{"TZ", "Asia/Kolkata"};
    const RoostFormat format = RoostFormat::system();
    EXPECT_EQ(format.locale(), "de_DE");
    EXPECT_EQ(format.full(12'345), "12.345");
    EXPECT_EQ(format.queueTime(moment("2026-07-01T18:30:00Z"), moment("2026-07-01T18:29:00Z")),
              (RoostFormat::QueueTime{"Morgen", "00:00", 1}));
}

} // namespace
} // namespace roost
