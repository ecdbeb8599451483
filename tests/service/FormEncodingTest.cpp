#include "service/FormEncoding.h"

#include <gtest/gtest.h>

#include <random>

namespace roost::test {

using FormEncoding::firstValue;
using FormEncoding::formEncoded;
using FormEncoding::percentEncoded;

TEST(FormEncoding, LeavesLettersDigitsAndFourMarksAsTheyAre)
{
    const std::string kept = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    EXPECT_EQ(percentEncoded(kept), kept);
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        if (kept.find(text) == std::string::npos) {
            EXPECT_EQ(percentEncoded(text),
                      "%" + QByteArray(text.c_str(), 1).toHex().toUpper().toStdString());
        }
    }
}

TEST(FormEncoding, WritesTextAsTheBytesOfItsUtf8)
{
    EXPECT_EQ(percentEncoded("é \u20ac"), "%C3%A9%20%E2%82%AC");
    EXPECT_EQ(percentEncoded("a+b/c:d=e&f"), "a%2Bb%2Fc%3Ad%3De%26f");
    EXPECT_EQ(percentEncoded(std::string("\0", 1)), "%00");
}

TEST(FormEncoding, OrdersThePairsByTheirKeys)
{
    EXPECT_EQ(formEncoded({{"resource", "https://h/mcp"}, {"code", "a b/c"}, {"client_id", ""}}),
              "client_id=&code=a%20b%2Fc&resource=https%3A%2F%2Fh%2Fmcp");
    EXPECT_EQ(formEncoded({}), "");
}

TEST(FormEncoding, ReadsBackEveryValueThatItWrites)
{
    std::mt19937 random{7};
    for (int round = 0; round < 2000; ++round) {
        std::string value;
        for (auto length = random() % 20; length > 0; --length) {
            value.push_back(static_cast<char>(random() % 256));
        }
        EXPECT_EQ(firstValue(formEncoded({{"a", "x"}, {"v", value}, {"z", "y"}}), "v"), value);
    }
}

TEST(FormEncoding, TakesTheFirstItemOfANameAlsoWhenItHasNoValue)
{
    EXPECT_EQ(firstValue("state=1&state=2", "state"), "1");
    EXPECT_EQ(firstValue("state&state=2", "state"), std::nullopt);
    EXPECT_EQ(firstValue("state=&state=2", "state"), "");
    EXPECT_EQ(firstValue("other=1", "state"), std::nullopt);
    EXPECT_EQ(firstValue("", "state"), std::nullopt);
}

TEST(FormEncoding, TakesNamesWholeAndInTheirCase)
{
    EXPECT_EQ(firstValue("xstate=1&statex=2&STATE=3&state=4", "state"), "4");
    EXPECT_EQ(firstValue("st%61te=5", "state"), "5");
    EXPECT_EQ(firstValue("&&state=6&", "state"), "6");
}

TEST(FormEncoding, DecodesPlusAsABlankAndKeepsFurtherEqualsSigns)
{
    EXPECT_EQ(firstValue("iss=https%3A%2F%2Fh%2Fa+b&x=1", "iss"), "https://h/a b");
    EXPECT_EQ(firstValue("code=a=b%3Dc", "code"), "a=b=c");
    EXPECT_EQ(firstValue("code=%2B", "code"), "+");
}

} // namespace roost::test
