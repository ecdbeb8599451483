#include "programs/brisken-roost/StatusText.h"

#include "programs/brisken-roost/TerminalText.h"
#include "tests/programs/brisken-roost/Records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace roost {
namespace {

using namespace std::chrono_literals;
using test::fileOf;
using test::noon;
using test::recordOf;
using test::signedOut;
using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

std::string tableOf(std::vector<RoostAccountRecord> accounts, TableStyle style = {})
{
    return statusText(statusReport(fileOf(std::move(accounts)), std::nullopt, noon), style);
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream{text};
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

RoostAccountRecord withBest(RoostAccountRecord record, const std::string& text)
{
    record.snapshot->best = RoostSnapshot::BestPost{"x", "X", 9200, text, {}};
    return record;
}

TEST(StatusText, IsATableOfOneLinePerProfileUnderItsHeadings)
{
    RoostAccountRecord ada = withBest(recordOf("ada", 48213, 90s), "Hello");
    ada.profileName = "Ada";
    ada.snapshot->views.previous = 43000;
    ada.snapshot->followers = RoostSnapshot::Followers{1310, {}, {}};
    ada.snapshot->posts = {4, 12, 1, {}};
    EXPECT_EQ(tableOf({ada, {"new", "New one"}}),
              "PROFILE  VIEWS  PREVIOUS  FOLLOWERS  SCHEDULED  FAILED  BEST POST        AGE\n"
              "Ada      48213     43000       1310         12       1  9200  Hello    1 min\n"
              "New one      –         –          –          –       –  –            waiting\n");
}

TEST(StatusText, OfNoProfilesIsEmpty) { EXPECT_EQ(tableOf({}), ""); }

TEST(StatusText, TellsTheAgeInTheLargestFittingUnit)
{
    EXPECT_THAT(tableOf({recordOf("a", 1, 59s)}), HasSubstr(" 59 s\n"));
    EXPECT_THAT(tableOf({recordOf("a", 1, 60s)}), HasSubstr(" 1 min\n"));
    EXPECT_THAT(tableOf({recordOf("a", 1, 3600s)}), HasSubstr(" 1 h\n"));
    EXPECT_THAT(tableOf({recordOf("a", 1, 86400s)}), HasSubstr(" 1 d\n"));
    EXPECT_THAT(tableOf({signedOut(recordOf("a", 1, 60s))}), HasSubstr(" signed out\n"));
}

TEST(StatusText, IsPlainUnlessColourIsAskedFor)
{
    RoostAccountRecord record = recordOf("a", 1, 1h);
    record.snapshot->posts.failed = 2;
    EXPECT_THAT(tableOf({record}), Not(HasSubstr("\033")));
    EXPECT_THAT(tableOf({record}, {true, 0}),
                AllOf(HasSubstr("\033[31m2\033[0m"), HasSubstr("\033[33m1 h\033[0m")));
}

TEST(StatusText, FitsTheTerminalByElidingTextsAndNeverNumbers)
{
    const std::string table =
        tableOf({withBest(recordOf("a", 123456789012, 1s), std::string(200, 'x'))}, {false, 100});
    for (const std::string& line : linesOf(table)) {
        EXPECT_LE(displayWidth(line), 100);
    }
    EXPECT_THAT(table, AllOf(HasSubstr("123456789012"), HasSubstr("x…")));
}

TEST(StatusText, AlignsWideAndCombiningCharacters)
{
    RoostAccountRecord wide = recordOf("a", 1, 1s);
    wide.profileName = "日本語";
    RoostAccountRecord combining = recordOf("b", 1, 1s);
    combining.profileName = "e\u0301";
    const std::string table = tableOf({wide, combining});
    std::vector<int> widths;
    for (const std::string& line : linesOf(table)) {
        widths.push_back(displayWidth(line));
    }
    EXPECT_THAT(widths, Each(widths.front()));
}

TEST(StatusText, LetsNoTextSteerTheTerminal)
{
    RoostAccountRecord record = withBest(recordOf("a", 1, 1s), "one\ntwo\x1b[2Jthree\u009b\u2028four\x7f");
    record.profileName = "\x1b]0;title\x07";
    const std::string table = tableOf({record});
    EXPECT_EQ(linesOf(table).size(), 2);
    EXPECT_THAT(table,
                AllOf(Not(HasSubstr("\x1b")), Not(HasSubstr("\x07")), Not(HasSubstr("\u009b")),
                      Not(HasSubstr("\u2028")), Not(HasSubstr("\x7f")), HasSubstr("one two·[2Jthree")));
}

TEST(StatusText, NamesTheNetworkOfABestPostWithoutText)
{
    EXPECT_THAT(tableOf({withBest(recordOf("a", 1, 1s), "")}), HasSubstr("9200  X"));
}

} // namespace
} // namespace roost
