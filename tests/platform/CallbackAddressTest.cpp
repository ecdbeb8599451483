#include "platform/CallbackAddress.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using std::nullopt;

TEST(CallbackAddresses, AreThoseOfTheSchemeInAnyCase)
{
    EXPECT_TRUE(isCallback("briskenroost://callback?x", "briskenroost"));
    EXPECT_TRUE(isCallback("BriskenRoost:x", "briskenroost"));
    EXPECT_TRUE(isCallback("briskenroost:", "briskenroost"));
    for (const char* other : {"", "briskenroost", "briskenroosts:x", "xbriskenroost:x",
                              "https://a/?briskenroost:x", " briskenroost:x", "brisken"}) {
        EXPECT_FALSE(isCallback(other, "briskenroost")) << other;
    }
}

TEST(CallbackAddresses, HoldNeitherBlanksNorControlCharactersNorOtherLetters)
{
    for (const std::string other : {" ", "\n", "\t", "\x7f", "ä", "\x1b[2J", "\r"}) {
        EXPECT_FALSE(isCallback("briskenroost:a" + other, "briskenroost")) << other;
    }
    EXPECT_FALSE(isCallback(std::string("briskenroost:a\0b", 16), "briskenroost"));
}

TEST(CallbackAddresses, HaveALongestLength)
{
    std::string address = "briskenroost:";
    address.resize(longestCallback, 'a');
    EXPECT_TRUE(isCallback(address, "briskenroost"));
    EXPECT_FALSE(isCallback(address + 'a', "briskenroost"));
}

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
    EXPECT_EQ(firstQueryItem("a:b?state&state=2", "state"), "") << "also without a value";
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

} // namespace
} // namespace roost::test
