#include "programs/brisken-roost/StatusText.h"

#include "programs/brisken-roost/TerminalText.h"
#include "tests/programs/brisken-roost/Records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/ubidi.h>
#include <unicode/unistr.h>

#include <memory>
#include <sstream>

namespace roost {
namespace {

using namespace std::chrono_literals;
using test::fileOf;
using test::fullRecord;
using test::inUtc;
using test::noon;
using test::recordOf;
using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Le;
using testing::Not;

std::string tableOf(std::vector<RoostAccountRecord> accounts, TableStyle style = {},
                    const std::string& locale = "en-GB")
{
    return statusText(statusReport(fileOf(std::move(accounts)), std::nullopt, noon), inUtc(locale), style);
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

std::vector<int> widthsOf(const std::string& table)
{
    std::vector<int> widths;
    for (const std::string& line : linesOf(table)) {
        widths.push_back(displayWidth(line));
    }
    return widths;
}

TEST(StatusText, IsATableOfOneCardForEachProfile)
{
    EXPECT_EQ("\n" + tableOf({fullRecord(), {"new", "New one"}}), R"(
Ada                 Updated 1 min ago
  Views: 48,213     +12%
  Followers  1,310  +2%
  12 scheduled      Tomorrow 09:30  Morning light
  Failed: 1
  Best post  9.2K   Hello

New one             Getting your numbers…
)");
}

TEST(StatusText, OfNoProfilesIsEmpty) { EXPECT_EQ(tableOf({}), ""); }

TEST(StatusText, IsPlainUnlessColourIsAskedFor)
{
    RoostAccountRecord record = recordOf("a", 1, 1h);
    record.snapshot->posts.failed = 2;
    EXPECT_THAT(tableOf({record}), Not(HasSubstr("\033")));
    EXPECT_THAT(tableOf({record}, {.colour = true}),
                AllOf(HasSubstr("\033[31mFailed: 2\033[0m"), HasSubstr("\033[33mUpdated 1 hr ago\033[0m")));
}

TEST(StatusText, FitsTheTerminalByElidingNamesAndTexts)
{
    RoostAccountRecord record = fullRecord();
    record.snapshot->best->text = std::string(200, 'x');
    record.snapshot->posts.next.back().text = std::string(200, 'y');
    record.profileName = std::string(200, 'z');
    for (const int width : {48, 60, 80, 100, 200}) {
        const std::string table = tableOf({record}, {.width = width});
        EXPECT_THAT(widthsOf(table), Each(Le(width))) << table;
        EXPECT_THAT(table, AllOf(HasSubstr("xxx…\n"), HasSubstr("yyy…\n"), HasSubstr("zzz…  Updated")));
    }
}

TEST(StatusText, NeverElidesNumbersAgesAndTimes)
{
    RoostAccountRecord record = fullRecord();
    record.snapshot->views.total = 123'456'789'012;
    for (const int width : {1, 10, 20, 30}) {
        EXPECT_THAT(tableOf({record}, {.width = width}),
                    AllOf(HasSubstr("Views: 123,456,789,012 "), HasSubstr("Updated 1 min ago"),
                          HasSubstr("Tomorrow 09:30"), HasSubstr("Best post  9.2K")));
    }
}

TEST(StatusText, AlignsWideAndCombiningCharactersAndThoseFromRightToLeft)
{
    std::vector<RoostAccountRecord> records;
    for (const char* name : {"日本語", "e\u0301te\u0301", "قهوة الصباح", "שלום", "🐦🐦", "plain"}) {
        records.push_back(recordOf(name, 1, 1s));
        records.back().profileName = name;
    }
    int shown = 0;
    for (const std::string& line : linesOf(tableOf(records))) {
        if (const auto state = line.find("Updated"); state != line.npos) {
            EXPECT_EQ(displayWidth(line.substr(0, state)), 21) << line;
            ++shown;
        }
    }
    EXPECT_EQ(shown, 6);
}

TEST(StatusText, IsolatesWhatRunsFromRightToLeft)
{
    RoostAccountRecord record = fullRecord();
    record.profileName = "שלום";
    record.snapshot->best->text = "קפה 3";
    const std::string table = tableOf({record});
    EXPECT_THAT(table, AllOf(HasSubstr("\u2068שלום\u2069"), HasSubstr("\u2068קפה 3\u2069\n")));
    EXPECT_THAT(tableOf({fullRecord()}), Not(HasSubstr("\u2068")));
    // Every cell of an Arabic card is one, numbers and blanks in it included.
    EXPECT_THAT(tableOf({fullRecord()}, {}, "ar-u-nu-latn"), HasSubstr("\u2068المتابعون  1,310\u2069"));
}

/// Whether a terminal that orders letters as UAX #9 says shows in the first `columns` of `line` what stands
/// there in memory, and beyond them the rest.
bool keepsColumns(const std::string& line, int columns)
{
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(line);
    if (text.isEmpty()) {
        return true;
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBiDi, void (*)(UBiDi*)> order{ubidi_open(), ubidi_close};
    ubidi_setPara(order.get(), text.getBuffer(), text.length(), UBIDI_DEFAULT_LTR, nullptr, &status);
    std::vector<std::int32_t> logical(static_cast<std::size_t>(text.length()));
    ubidi_getVisualMap(order.get(), logical.data(), &status);
    EXPECT_TRUE(U_SUCCESS(status));
    const auto width = [&text](std::int32_t from, std::int32_t length) {
        std::string part;
        text.tempSubString(from, length).toUTF8String(part);
        return displayWidth(part);
    };
    int shown = 0;
    for (const std::int32_t index : logical) {
        // The halves of a pair are next to each other; the first one counts.
        const int own = U16_IS_TRAIL(text[index]) ? 0 : width(index, U16_IS_LEAD(text[index]) ? 2 : 1);
        if (own > 0 && (shown < columns) != (width(0, index) < columns)) {
            return false;
        }
        shown += own;
    }
    return true;
}

TEST(StatusText, KeepsItsColumnsWhereTheTerminalOrdersLetters)
{
    std::vector<RoostAccountRecord> records{fullRecord(), fullRecord(), fullRecord()};
    records[1].profileName = "קפה הבוקר";
    records[1].snapshot->best->text = "תודה ל-10,000 מכם! 🎉 (Danke)";
    records[2].profileName = "مقهى 12";
    records[2].snapshot->posts.next.back().text = "١٢ وصفة";
    for (const char* locale : {"en", "de", "ja", "ar", "ar-EG", "he", "fa", "ur"}) {
        for (const int width : {40, 60, 80, 0}) {
            const std::vector<std::string> lines = linesOf(tableOf(records, {.width = width}, locale));
            const std::string& heading = lines.front();
            const int columns = displayWidth(heading.substr(0, heading.rfind("  ") + 2));
            for (const std::string& line : lines) {
                EXPECT_TRUE(keepsColumns(line, columns)) << locale << '\n' << line;
            }
        }
    }
    EXPECT_FALSE(keepsColumns("שלום      תודה", 6)) << "what would come of it";
}

TEST(StatusText, LetsNoTextSteerTheTerminal)
{
    RoostAccountRecord record = fullRecord();
    record.snapshot->best->text = "one\ntwo\x1b[2Jthree\u009b\u2028four\x7f";
    record.snapshot->posts.next.back().text = "five\u202esix\u2069\x1b[1m";
    record.profileName = "\x1b]0;title\x07";
    const std::string table = tableOf({record});
    EXPECT_EQ(linesOf(table).size(), 6);
    EXPECT_THAT(table, AllOf(Not(HasSubstr("\x1b")), Not(HasSubstr("\x07")), Not(HasSubstr("\u009b")),
                             Not(HasSubstr("\u2028")), Not(HasSubstr("\x7f")), Not(HasSubstr("\u202e")),
                             HasSubstr("one two·[2Jthree")));
}

} // namespace
} // namespace roost
