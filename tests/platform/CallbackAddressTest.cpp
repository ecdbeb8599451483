#include "platform/CallbackAddress.h"

#include "bus/Handover.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

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

} // namespace
} // namespace roost::test
