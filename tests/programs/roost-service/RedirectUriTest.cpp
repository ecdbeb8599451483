#include "programs/roost-service/RedirectUri.h"

#include <gtest/gtest.h>

namespace roost::local {
namespace {

TEST(RedirectUri, MayBeOfAPrivateSchemeOrLeadToTheLoopbackInterface)
{
    for (const char* uri :
         {"briskenroost://oauth/callback", "world.brisken.roost:/oauth", "http://127.0.0.1:8080/back",
          "http://[::1]/back", "http://localhost:3000/back?a=b"}) {
        EXPECT_TRUE(mayBeRegistered(uri)) << uri;
    }
}

TEST(RedirectUri, IsNothingElse)
{
    for (const char* uri :
         {"", "briskenroost", "briskenroost:", "https://roost.example/back", "http://roost.example/back",
          "http://127.0.0.1.evil.example/back", "http://127.0.0.2/back", "http://user@127.0.0.1/back",
          "http://localhost.evil/back", "javascript:alert(1)", "data:text/html,x", "file:///etc/passwd",
          "otherapp://oauth/callback", "briskenroost://oauth/callback#part", "briskenroost://oauth/call back",
          "briskenroost://oauth/callb\u00e4ck", "briskenroost://oauth\\callback", "/oauth/callback",
          "briskenroost://user@oauth/callback"}) {
        EXPECT_FALSE(mayBeRegistered(uri)) << uri;
    }
    EXPECT_FALSE(mayBeRegistered("briskenroost://oauth/" + QByteArray(2048, 'a')));
}

TEST(RedirectUri, IsComparedByteForByte)
{
    const QByteArray known = "briskenroost://oauth/callback";
    EXPECT_TRUE(isSameRedirect(known, known));
    for (const char* uri : {"briskenroost://oauth/callback/", "briskenroost://oauth/callback?x=1",
                            "BRISKENROOST://oauth/callback", "briskenroost://OAUTH/callback",
                            "briskenroost://oauth/%63allback", "briskenroost://oauth:80/callback", ""}) {
        EXPECT_FALSE(isSameRedirect(known, uri)) << uri;
    }
}

TEST(RedirectUri, MayHaveAnyPortAtALoopbackAddress)
{
    EXPECT_TRUE(isSameRedirect("http://127.0.0.1/back?a=b", "http://127.0.0.1:41234/back?a=b"));
    EXPECT_TRUE(isSameRedirect("http://[::1]:1/back", "http://[::1]:2/back"));
    EXPECT_FALSE(isSameRedirect("http://127.0.0.1/back", "http://127.0.0.1:41234/other"));
    EXPECT_FALSE(isSameRedirect("http://127.0.0.1/back", "http://[::1]/back"));
    EXPECT_FALSE(isSameRedirect("http://127.0.0.1/back", "http://127.0.0.1:80@evil.example/back"));
    EXPECT_FALSE(isSameRedirect("http://localhost:1/back", "http://localhost:2/back"));
}

TEST(RedirectUri, IsWhereAFormMayLead)
{
    EXPECT_EQ(formActionOf("briskenroost://oauth/callback"), "briskenroost:");
    EXPECT_EQ(formActionOf("http://127.0.0.1:8080/back?a=b"), "http://127.0.0.1:8080");
}

} // namespace
} // namespace roost::local
