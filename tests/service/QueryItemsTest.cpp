#include "service/QueryItems.h"

#include "service/FormEncoding.h"

#include <gtest/gtest.h>

#include <random>

namespace roost::test {
namespace {

using std::nullopt;

TEST(QueryItems, AreFoundByTheirDecodedNames)
{
    EXPECT_EQ(firstQueryItem("a:b?x=1&state=2&y", "state"), "2");
    EXPECT_EQ(firstQueryItem("a:b?st%61te=2", "state"), "2");
    EXPECT_EQ(firstQueryItem("a:b?State=2&astate=3&state2=4", "state"), nullopt);
    EXPECT_EQ(firstQueryItem("a:b", "state"), nullopt);
    EXPECT_EQ(firstQueryItem("a:b?", "state"), nullopt);
    EXPECT_EQ(firstQueryItem("", "state"), nullopt);
}

TEST(QueryItems, AreTheFirstOrTheLastOfTheirName)
{
    EXPECT_EQ(firstQueryItem("a:b?state=1&state=2", "state"), "1");
    EXPECT_EQ(lastQueryItem("a:b?state=1&state=2", "state"), "2");
    EXPECT_EQ(firstQueryItem("a:b?state&state=2", "state"), nullopt) << "also without a value";
    EXPECT_EQ(lastQueryItem("a:b?state=1&state", "state"), nullopt);
    EXPECT_EQ(firstQueryItem("a:b?state=&state=2", "state"), "");
}

TEST(QueryItems, AreDecodedLikeForms)
{
    EXPECT_EQ(firstQueryItem("a:b?s=a+b%2Bc%20d%3D%26", "s"), "a b+c d=&");
    EXPECT_EQ(firstQueryItem("a:b?s=a=b", "s"), "a=b");
    EXPECT_EQ(firstQueryItem("a:b?s=%", "s"), "%");
}

TEST(QueryItems, AreNoneOfTheFragment)
{
    EXPECT_EQ(firstQueryItem("a:b#?state=1", "state"), nullopt);
    EXPECT_EQ(firstQueryItem("a:b?state=1#&state=2", "state"), "1");
    EXPECT_EQ(lastQueryItem("a:b?state=1#&state=2", "state"), "1");
}

TEST(QueryItems, AreNoneOfThePath)
{
    EXPECT_EQ(firstQueryItem("a:b&state=1", "state"), nullopt);
    EXPECT_EQ(firstQueryItem("a:b?x?state=1", "state"), nullopt);
}

TEST(QueryItems, AreReadBackAsTheyWereWritten)
{
    std::mt19937 random{7};
    for (int round = 0; round < 2000; ++round) {
        std::string value;
        for (auto length = random() % 20; length > 0; --length) {
            value.push_back(static_cast<char>(random() % 256));
        }
        const std::string query = FormEncoding::formEncoded({{"a", "x"}, {"v", value}, {"z", "y"}});
        EXPECT_EQ(firstQueryItem("a:b?" + query, "v"), value);
    }
}

TEST(QueryItems, MayBeEmpty)
{
    EXPECT_EQ(firstQueryItem("a:b?&&state=6&", "state"), "6");
    EXPECT_EQ(firstQueryItem("a:b?state=", "state"), "");
    EXPECT_EQ(firstQueryItem("a:b?=1", ""), "1");
}

} // namespace
} // namespace roost::test
