#include "model/OverviewPage.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

std::string pageBelow(const char* base, const std::optional<WebURL>& named = {})
{
    const std::optional<WebURL> page = overviewPage(named, QUrl{QString::fromUtf8(base)});
    return page ? page->text() : "none";
}

TEST(OverviewPage, IsTheOneThatTheServiceNamed)
{
    EXPECT_EQ(pageBelow("https://roost.test", WebURL::parse("https://Other.test/p?a=b#c")),
              "https://Other.test/p?a=b#c");
}

TEST(OverviewPage, LiesBelowTheBaseOtherwise)
{
    EXPECT_EQ(pageBelow("https://roost.test"), "https://roost.test/roost/overview");
    EXPECT_EQ(pageBelow("https://roost.test/"), "https://roost.test/roost/overview");
    EXPECT_EQ(pageBelow("https://roost.test/a/b"), "https://roost.test/a/b/roost/overview");
    EXPECT_EQ(pageBelow("http://127.0.0.1:8080/"), "http://127.0.0.1:8080/roost/overview");
    EXPECT_EQ(pageBelow("https://roost.test/%20ä/"), "https://roost.test/%20%C3%A4/roost/overview");
}

TEST(OverviewPage, IsNoneWhereTheBaseIsNoWebAddress)
{
    for (const char* base : {"", "file:///tmp", "roost.test", "mailto:a@b", "https://"}) {
        EXPECT_EQ(pageBelow(base), "none") << base;
    }
    EXPECT_EQ(pageBelow("", WebURL::parse("https://roost.test/x")), "https://roost.test/x");
}

} // namespace
} // namespace roost
