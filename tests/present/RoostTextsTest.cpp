#include "present/RoostTexts.h"

#include <gmock/gmock.h>

#include <set>

namespace roost {
namespace {

std::size_t count(std::string_view text, std::string_view part)
{
    std::size_t found = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size())) {
        ++found;
    }
    return found;
}

TEST(RoostTexts, AreDeclaredOnce)
{
    std::set<std::string_view> keys;
    for (const RoostText& text : roostTexts) {
        EXPECT_TRUE(keys.insert(text.key).second) << text.key;
    }
}

TEST(RoostTexts, HoldThePlaceholderThatTheyAreDeclaredWith)
{
    for (const RoostText& text : roostTexts) {
        EXPECT_EQ(count(text.key, "%@"), text.filling == Filling::text ? 1U : 0U) << text.key;
        EXPECT_EQ(count(text.key, "%lld"), text.filling == Filling::count ? 1U : 0U) << text.key;
        EXPECT_EQ(count(text.key, "%"), text.filling == Filling::nothing ? 0U : 1U) << text.key;
    }
}

TEST(RoostTexts, AreKnownWhenTheProgramIsCompiled)
{
    static_assert(knownText("Today") == "Today");
    SUCCEED();
}

} // namespace
} // namespace roost
