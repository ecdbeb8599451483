#include "model/JsonReader.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <string_view>

namespace roost::json {
namespace {

using Kind = Integer::Kind;

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

struct Case {
    std::string_view text;
    std::int64_t value;
};

TEST(IntegerOf, ReadsIntegersExactlyFromOneEndOf64BitsToTheOther)
{
    constexpr Case cases[]{
        {"0", 0},
        {"7", 7},
        {"-7", -7},
        {"9007199254740993", 9'007'199'254'740'993},
        {"-9007199254740993", -9'007'199'254'740'993},
        {"9223372036854775806", most - 1},
        {"9223372036854775807", most},
        {"-9223372036854775807", least + 1},
        {"-9223372036854775808", least},
    };
    for (const Case& c : cases) {
        const Integer read = integerOf(c.text);
        EXPECT_EQ(read.kind, Kind::exact) << c.text;
        EXPECT_EQ(read.value, c.value) << c.text;
    }
}

TEST(IntegerOf, TakesAPointAndAnExponentWhenTheValueIsAnInteger)
{
    constexpr Case cases[]{
        {"5.0", 5},
        {"5.000000000000000000000000000000", 5},
        {"5e0", 5},
        {"5E0", 5},
        {"5e+0", 5},
        {"5e-0", 5},
        {"50e-1", 5},
        {"5000e-3", 5},
        {"0.5e1", 5},
        {"0.0005e4", 5},
        {"-5.0e0", -5},
        {"1e18", 1'000'000'000'000'000'000},
        {"9.223372036854775807e18", most},
        {"-9.223372036854775808E+18", least},
        {"92233720368547758070e-1", most},
        {"9007199254740993.0", 9'007'199'254'740'993},
        {"9007199254740993e0", 9'007'199'254'740'993},
        {"900719925474099.3e1", 9'007'199'254'740'993},
        {"-0", 0},
        {"-0.0", 0},
        {"0e0", 0},
        {"0e999999999999999999999999", 0},
        {"-0.000e-5", 0},
        {"10000000000000000000000000000e-28", 1},
        {"5e00000000000000000000000001", 50},
    };
    for (const Case& c : cases) {
        const Integer read = integerOf(c.text);
        EXPECT_EQ(read.kind, Kind::exact) << c.text;
        EXPECT_EQ(read.value, c.value) << c.text;
    }
}

TEST(IntegerOf, TellsAFraction)
{
    for (const std::string_view text :
         {"5.5", "0.1", "-0.1", "5e-1", "1e-400", "9007199254740993.5", "0.00000000000000000000000000001",
          "15e-1", "1.000000000000000000000000000001", "1e-99999999999999999999",
          "123456789012345678901234567890.5"}) {
        EXPECT_EQ(integerOf(text).kind, Kind::fraction) << text;
    }
}

TEST(IntegerOf, TellsANumberBeyond64Bits)
{
    for (const std::string_view text :
         {"9223372036854775808", "-9223372036854775809", "18446744073709551615", "18446744073709551616",
          "99999999999999999999", "-99999999999999999999", "10000000000000000000", "1e19", "1e400", "-1e400",
          "1e99999999999999999999", "9.223372036854775808e18", "123456789012345678901234567890"}) {
        EXPECT_EQ(integerOf(text).kind, Kind::outOfRange) << text;
    }
}

TEST(IntegerOf, RefusesWhatIsNoJsonNumber)
{
    for (const std::string_view text :
         {"",    "-",     "+",     "+5",    "--5",   ".5",    "5.",  "-.5",      "5.e1",
          "5e",  "5e+",   "5e-",   "e5",    "05",    "00",    "-05", "0x10",     "5x",
          "5 ",  " 5",    "5.5.5", "5e5e5", "5e5.5", "NaN",   "nan", "Infinity", "-Infinity",
          "inf", "1_000", "1,000", "5f",    "0b1",   "\u0665"}) {
        EXPECT_THROW(integerOf(text), Malformed) << text;
    }
}

TEST(IntegerOf, AgreesWithThePlainFormHoweverTheSameIntegerIsWritten)
{
    std::mt19937_64 random{5};
    for (int i = 0; i < 20'000; ++i) {
        const auto value = static_cast<std::int64_t>((random() >> (random() % 64)) | 1);
        const std::string plain = std::to_string(value);
        ASSERT_EQ(integerOf(plain).value, value);
        const bool negative = plain.front() == '-';
        const std::string digits = plain.substr(negative ? 1 : 0);
        const auto cut = static_cast<std::size_t>(random() % digits.size());
        std::string moved = digits.substr(0, digits.size() - cut);
        if (cut > 0) {
            moved += "." + digits.substr(digits.size() - cut) + "e" + std::to_string(cut);
        } else {
            moved += std::string(1 + random() % 30, '0');
            moved += "e-" + std::to_string(moved.size() - digits.size());
        }
        moved.insert(0, negative ? "-" : "");
        const Integer read = integerOf(moved);
        ASSERT_EQ(read.kind, Kind::exact) << moved;
        ASSERT_EQ(read.value, value) << moved;
    }
}

TEST(IntegerOf, ReadsAMegabyteOfDigitsWithoutTrouble)
{
    const std::string zeros(1'000'000, '0');
    EXPECT_EQ(integerOf("1" + zeros).kind, Kind::outOfRange);
    EXPECT_EQ(integerOf("5." + zeros).value, 5);
    EXPECT_EQ(integerOf("0." + zeros + "5e1000001").value, 5);
    EXPECT_EQ(integerOf("5" + zeros + "e-1000000").value, 5);
    EXPECT_EQ(integerOf("5." + zeros + "1").kind, Kind::fraction);
}

TEST(Under, BuildsThePathFromTheInsideOut)
{
    Problem found = under("views", under("[3]", under("series", under("day", problem("missing")))));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path, "views[3].series.day");
    EXPECT_EQ(found->text(), "views[3].series.day: missing");
    EXPECT_FALSE(under("views", nullptr));
    EXPECT_EQ(problem("empty")->text(), "empty");
}

} // namespace
} // namespace roost::json
