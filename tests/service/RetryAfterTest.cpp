#include "service/WidgetAPI.h"
#include "tests/support/CommaLocale.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace roost::test {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

} // namespace

TEST(RetryAfter, IsReadAsADecimalNumber)
{
    EXPECT_EQ(parseRetryAfter("120"), 120);
    EXPECT_EQ(parseRetryAfter("1.5"), 1.5);
    EXPECT_EQ(parseRetryAfter("0"), 0);
    EXPECT_EQ(parseRetryAfter("+5"), 5);
    EXPECT_EQ(parseRetryAfter("-3"), -3);
    EXPECT_EQ(parseRetryAfter(".5"), 0.5);
    EXPECT_EQ(parseRetryAfter("5."), 5);
    EXPECT_EQ(parseRetryAfter("1e3"), 1000);
    EXPECT_EQ(parseRetryAfter("007"), 7);
}

TEST(RetryAfter, IsNotBounded)
{
    EXPECT_EQ(parseRetryAfter("1e300"), 1e300);
    EXPECT_EQ(parseRetryAfter("1e999"), infinity);
    EXPECT_EQ(parseRetryAfter("-1e999"), -infinity);
    EXPECT_EQ(parseRetryAfter("1e-999"), 0);
}

TEST(RetryAfter, IsReadInHexadecimalAndAsInfinityAndAsNoNumber)
{
    EXPECT_EQ(parseRetryAfter("0x10"), 16);
    EXPECT_EQ(parseRetryAfter("0X1.8p1"), 3);
    EXPECT_EQ(parseRetryAfter("inf"), infinity);
    EXPECT_EQ(parseRetryAfter("-Infinity"), -infinity);
    const std::optional<double> nan = parseRetryAfter("NaN");
    EXPECT_TRUE(nan && std::isnan(*nan));
}

TEST(RetryAfter, IsNothingWithoutText) { EXPECT_EQ(parseRetryAfter(""), std::nullopt); }

TEST(RetryAfter, IsNothingWithWhiteSpaceInFront)
{
    for (const char* text : {" 120", "\t120", "\n120", "\v120", "\f120", "\r120", " "}) {
        EXPECT_EQ(parseRetryAfter(text), std::nullopt) << text;
    }
}

TEST(RetryAfter, IsNothingWithAnythingBehind)
{
    for (const char* text : {"120 ", "120s", "1.5.2", "1,5", "0x", "1e", "120\n", "infinite", "12 0"}) {
        EXPECT_EQ(parseRetryAfter(text), std::nullopt) << text;
    }
    EXPECT_EQ(parseRetryAfter(QByteArrayView("120\0", 4)), std::nullopt);
    EXPECT_EQ(parseRetryAfter(QByteArrayView("1\0002", 3)), std::nullopt);
    EXPECT_EQ(parseRetryAfter(QByteArrayView("\0", 1)), std::nullopt);
}

TEST(RetryAfter, IsNothingForADateAndForWords)
{
    EXPECT_EQ(parseRetryAfter("Wed, 21 Oct 2015 07:28:00 GMT"), std::nullopt);
    EXPECT_EQ(parseRetryAfter("soon"), std::nullopt);
    EXPECT_EQ(parseRetryAfter("--5"), std::nullopt);
}

TEST(RetryAfter, ReadsNoFurtherThanItsText)
{
    const QByteArrayView text = "12345";
    EXPECT_EQ(parseRetryAfter(text.first(2)), 12);
}

TEST(RetryAfter, IsReadAlikeWhateverTheLocaleOfTheProcess)
{
    const CommaLocale locale;
    ASSERT_EQ(std::strtod("1,5", nullptr), 1.5);

    EXPECT_EQ(parseRetryAfter("1.5"), 1.5);
    EXPECT_EQ(parseRetryAfter("1,5"), std::nullopt);
}

} // namespace roost::test
