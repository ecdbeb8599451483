#include "service/FormEncoding.h"

#include <gtest/gtest.h>

namespace roost::test {

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

} // namespace roost::test
