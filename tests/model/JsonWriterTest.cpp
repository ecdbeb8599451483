#include "model/JsonWriter.h"

#include "tests/support/RandomSnapshot.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace roost::json {
namespace {

std::string written(std::string_view text)
{
    Writer writer;
    writer.text(text);
    return writer.take();
}

TEST(Writer, EscapesOnlyWhatJsonAsksFor)
{
    EXPECT_EQ(written("a\"b\\c/d"), R"("a\"b\\c/d")");
    EXPECT_EQ(written("\b\f\n\r\t"), R"("\b\f\n\r\t")");
    EXPECT_EQ(written(std::string_view{"\0\x01\x1F\x7F", 4}), "\"\\u0000\\u0001\\u001F\x7F\"");
    EXPECT_EQ(written("\u00FC\u2028\U0001F600"), "\"\u00FC\u2028\U0001F600\"");
    EXPECT_EQ(written(""), "\"\"");
}

TEST(Writer, WritesIntegersExactly)
{
    Writer writer;
    writer.beginArray();
    for (const std::int64_t value : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1},
                                     std::int64_t{0}, std::int64_t{9'007'199'254'740'993},
                                     std::int64_t{1'718'000'000}, std::numeric_limits<std::int64_t>::max()}) {
        writer.integer(value);
    }
    writer.boolean(true);
    writer.boolean(false);
    writer.endArray();
    EXPECT_EQ(writer.take(),
              "[-9223372036854775808,-1,0,9007199254740993,1718000000,9223372036854775807,true,false]");
}

TEST(Writer, PutsAReplacementCharacterInThePlaceOfEachBrokenPart)
{
    EXPECT_EQ(written("\xFF"), "\"\uFFFD\"");
    EXPECT_EQ(written("a\x80z"), "\"a\uFFFDz\"");
    EXPECT_EQ(written("\xC3"), "\"\uFFFD\"");
    EXPECT_EQ(written("a\xFF\xFEz"), "\"a\uFFFD\uFFFDz\"");
    EXPECT_EQ(written("\xC3\xA9\xFF\xC3\xA9"), "\"\u00E9\uFFFD\u00E9\"");
    EXPECT_EQ(written("\"\xFF\n"), R"("\"�\n")");
}

TEST(Writer, KeepsAMarkAtTheFrontOfABrokenText)
{
    EXPECT_EQ(written("\uFEFFa"), "\"\uFEFFa\"");
    EXPECT_EQ(written("\uFEFFa\xFF"), "\"\uFEFFa\uFFFD\"");
}

TEST(Writer, WritesValidJsonForAnyBytes)
{
    test::RandomSnapshot random{3};
    for (int i = 0; i < 5'000; ++i) {
        std::string bytes = random.text();
        for (std::uint64_t count = random.below(4); count > 0; --count) {
            bytes.insert(random.below(bytes.size() + 1), 1, static_cast<char>(random.below(256)));
        }
        ASSERT_TRUE(nlohmann::json::accept(written(bytes))) << written(bytes);
    }
}

TEST(Writer, WritesADateAsAText)
{
    Writer writer;
    write(writer, Date{std::chrono::milliseconds{1500}});
    EXPECT_EQ(writer.take(), R"("1970-01-01T00:00:01.500Z")");
}

} // namespace
} // namespace roost::json
