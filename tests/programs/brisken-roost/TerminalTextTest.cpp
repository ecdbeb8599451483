#include "programs/brisken-roost/TerminalText.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

TEST(OnOneLine, LetsNoTextSteerTheTerminal)
{
    EXPECT_EQ(onOneLine("one\ntwo\tthree\u2028four\u2029five"), "one two three four five");
    EXPECT_EQ(onOneLine("\x1b[2J\x07\u009b\x7f"), "·[2J···");
    EXPECT_EQ(onOneLine("a\u202eb\u2067c\u2069"), "abc");
    EXPECT_EQ(onOneLine("👩\u200d🚀 שלום"), "👩\u200d🚀 שלום");
    EXPECT_EQ(onOneLine("Brisken é 日本 🐦"), "Brisken é 日本 🐦");
}

TEST(Isolated, IsWhatRunsFromRightToLeft)
{
    EXPECT_EQ(isolated("שלום"), "\u2068שלום\u2069");
    EXPECT_EQ(isolated("A قهوة"), "\u2068A قهوة\u2069");
    EXPECT_EQ(isolated("١٢"), "\u2068١٢\u2069");
    EXPECT_EQ(isolated("a\u200fb"), "\u2068a\u200fb\u2069") << "a mark without a width";
    EXPECT_EQ(isolated("+12% é 日本 🐦"), "+12% é 日本 🐦");
    EXPECT_EQ(isolated(""), "");
}

TEST(DisplayWidth, CountsTheColumnsOfATerminal)
{
    EXPECT_EQ(displayWidth(""), 0);
    EXPECT_EQ(displayWidth("abc"), 3);
    EXPECT_EQ(displayWidth("日本語"), 6);
    EXPECT_EQ(displayWidth("e\u0301"), 1);
    EXPECT_EQ(displayWidth("שָׁלוֹם"), 4);
    EXPECT_EQ(displayWidth("3:05\u202fPM"), 7);
    EXPECT_EQ(displayWidth(isolated("\u061c+٢٪\u200f")), 3);
}

TEST(Elided, KeepsWhatFitsAndEndsInAnEllipsis)
{
    EXPECT_EQ(elided("short", 5), "short");
    EXPECT_EQ(elided("longer", 5), "long…");
    EXPECT_EQ(elided("日本語", 5), "日本…");
    EXPECT_EQ(displayWidth(elided("日本語", 4)), 3);
}

} // namespace
} // namespace roost
