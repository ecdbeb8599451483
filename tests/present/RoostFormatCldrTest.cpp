#include "present/RoostFormat.h"
#include "tests/present/Formats.h"
#include "tests/support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unicode/uversion.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <tuple>

namespace roost {
namespace {

using nlohmann::json;
using test::formatFor;
using test::moment;
using namespace std::chrono_literals;

json dataFile(const std::string& name)
{
    return json::parse(
        test::bytesOf(std::filesystem::path{ROOST_SOURCE_DIR} / "tests" / "present" / "data" / name));
}

using Place = std::tuple<std::string, std::string, std::string>; // locale, kind, input

/// What Node.js's Intl says, by data/make-expected.mjs: expected.json by CLDR 48, differences.json what CLDR
/// 42, the data of ICU 72, says otherwise.
struct Tables {
    json expected = dataFile("expected.json");
    std::map<Place, std::pair<std::string, std::string>> differences; // older, newer

    Tables()
    {
        const json file = dataFile("differences.json");
        for (const json& row : file.at("differences")) {
            differences[{row.at(0), row.at(1), row.at(2)}] = {row.at(3), row.at(4)};
        }
    }
};

const Tables& tables()
{
    static const Tables read;
    return read;
}

std::string inputText(const json& input)
{
    return input.is_string() ? input.get<std::string>() : input.dump();
}

/// Whether `said` is what CLDR says, of the version that this ICU has: of 42 exactly where 48 differs, and of
/// one of them with an ICU in between or later.
bool isExpected(const std::string& said, const Place& place, const std::string& expected)
{
    const auto difference = tables().differences.find(place);
    if (difference == tables().differences.end()) {
        return said == expected;
    }
    return said == difference->second.first || (U_ICU_VERSION_MAJOR_NUM > 72 && said == expected);
}

void expectAgreement(const std::string& kind,
                     const std::function<std::string(const RoostFormat&, const json& input)>& text)
{
    int compared = 0;
    const json& inputs = tables().expected.at("inputs").at(kind);
    for (const auto& [locale, kinds] : tables().expected.at("texts").items()) {
        const RoostFormat format = formatFor(locale);
        for (std::size_t index = 0; index < inputs.size(); ++index) {
            const std::string expected = kinds.at(kind).at(index);
            const std::string input = inputText(inputs.at(index));
            const std::string said = text(format, inputs.at(index));
            EXPECT_TRUE(isExpected(said, {locale, kind, input}, expected))
                << locale << ", " << kind << " of " << input << ": \"" << said << "\", not \"" << expected
                << '"';
            ++compared;
        }
    }
    EXPECT_EQ(compared, static_cast<int>(inputs.size() * 81));
}

std::int64_t count(const json& input) { return std::stoll(input.get<std::string>()); }

std::string withPlainSpaces(std::string text)
{
    static const std::string narrow = "\u202F";
    for (auto at = text.find(narrow); at != text.npos; at = text.find(narrow)) {
        text.replace(at, narrow.size(), " ");
    }
    return text;
}

TEST(RoostFormatByCldr, WritesCompactCounts)
{
    expectAgreement(
        "compact", [](const RoostFormat& format, const json& input) { return format.compact(count(input)); });
}

TEST(RoostFormatByCldr, WritesFullCounts)
{
    expectAgreement("full",
                    [](const RoostFormat& format, const json& input) { return format.full(count(input)); });
}

TEST(RoostFormatByCldr, WritesSignedCounts)
{
    expectAgreement("signedCount", [](const RoostFormat& format, const json& input) {
        return format.signedCount(count(input));
    });
}

TEST(RoostFormatByCldr, WritesPercentages)
{
    expectAgreement("percent",
                    [](const RoostFormat& format, const json& input) { return format.percent(input); });
}

TEST(RoostFormatByCldr, WritesSignedPercentages)
{
    expectAgreement("signedPercent",
                    [](const RoostFormat& format, const json& input) { return format.signedPercent(input); });
}

TEST(RoostFormatByCldr, WritesAgesInEveryUnitAndPluralForm)
{
    expectAgreement("ago", [](const RoostFormat& format, const json& input) { return format.ago(input); });
}

TEST(RoostFormatByCldr, WritesTimesOfDay)
{
    // Node.js writes plain spaces in times where CLDR has U+202F, for the sake of old pages.
    expectAgreement("time", [](const RoostFormat& format, const json& input) {
        return withPlainSpaces(format.timeText(moment(input)));
    });
}

TEST(RoostFormatByCldr, WritesWeekdays)
{
    expectAgreement("weekday", [](const RoostFormat& format, const json& input) {
        const Date post = moment(input);
        return format.queueTime(post, post - 72h).dayLabel;
    });
}

TEST(RoostFormatByCldr, WritesDaysOfMonths)
{
    expectAgreement("date", [](const RoostFormat& format, const json& input) {
        const Date post = moment(input);
        return format.queueTime(post, post - 200h).dayLabel;
    });
}

TEST(RoostFormatByCldr, KnowsWhoUsesTwelveHours)
{
    expectAgreement("twelveHour", [](const RoostFormat& format, const json&) -> std::string {
        return format.usesTwelveHour() ? "true" : "false";
    });
}

TEST(TheTablesOfCldr, CoverMoreThanFortyLocalesAndNameTheirOrigin)
{
    EXPECT_GT(tables().expected.at("texts").size(), 40U);
    EXPECT_EQ(tables().expected.at("madeWith").at("cldr"), "48.0");
    EXPECT_EQ(dataFile("differences.json").at("older").at("cldr"), "42.0");
}

TEST(TheTablesOfCldr, NameOnlyDifferencesThatAreOnes)
{
    const json& inputs = tables().expected.at("inputs");
    std::set<Place> known;
    std::map<Place, std::string> newer;
    for (const auto& [locale, kinds] : tables().expected.at("texts").items()) {
        for (const auto& [kind, texts] : kinds.items()) {
            for (std::size_t index = 0; index < texts.size(); ++index) {
                newer[{locale, kind, inputText(inputs.at(kind).at(index))}] = texts.at(index);
            }
        }
    }
    for (const auto& [place, texts] : tables().differences) {
        EXPECT_NE(texts.first, texts.second) << std::get<0>(place);
        ASSERT_TRUE(newer.contains(place)) << std::get<0>(place) << std::get<1>(place) << std::get<2>(place);
        EXPECT_EQ(newer.at(place), texts.second);
    }
}

TEST(TheTablesOfCldr, SayWhyTheyDiffer)
{
    const json file = dataFile("differences.json");
    const json& reasons = file.at("reasons");
    std::set<std::pair<std::size_t, std::string>> used; // reason, locale
    for (const json& row : file.at("differences")) {
        std::size_t found = 0;
        for (std::size_t index = 0; index < reasons.size(); ++index) {
            const json& one = reasons.at(index);
            if (std::ranges::count(one.at("locales"), row.at(0)) > 0 &&
                std::ranges::count(one.at("kinds"), row.at(1)) > 0) {
                EXPECT_FALSE(one.at("reason").get<std::string>().empty());
                used.insert({index, row.at(0)});
                ++found;
            }
        }
        EXPECT_EQ(found, 1U) << row;
    }
    for (std::size_t index = 0; index < reasons.size(); ++index) {
        for (const json& locale : reasons.at(index).at("locales")) {
            EXPECT_TRUE(used.contains({index, locale}))
                << reasons.at(index) << " is of no use for " << locale;
        }
    }
}

} // namespace
} // namespace roost
