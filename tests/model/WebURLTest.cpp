#include "model/WebURL.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

TEST(WebURL, TakesHttpAndHttpsWithAHost)
{
    for (const char* text : {"https://roost.brisken.world", "http://localhost", "https://localhost:8443/",
                             "https://192.0.2.1/a", "https://[2001:db8::1]/", "https://host/a?b#c",
                             "https://user@host/", "https://host?q", "https://host#f", "https://host/%20%7e",
                             "https://b\u00FCcher.example/\u00FC", "https://a_b.example/"}) {
        const auto url = WebURL::parse(text);
        ASSERT_TRUE(url) << text;
        EXPECT_EQ(url->text(), text);
        EXPECT_TRUE(url->url().isValid()) << text;
        EXPECT_FALSE(url->url().host().isEmpty()) << text;
    }
}

TEST(WebURL, IgnoresTheCaseOfTheSchemeAndKeepsTheTextAsReceived)
{
    for (const char* text : {"HTTPS://Example.COM/Path", "hTTp://EXAMPLE/%7E"}) {
        const auto url = WebURL::parse(text);
        ASSERT_TRUE(url) << text;
        EXPECT_EQ(url->text(), text);
    }
    EXPECT_EQ(WebURL::parse("HTTPS://Example.COM/Path")->url(),
              QUrl{QStringLiteral("https://example.com/Path")});
    EXPECT_NE(WebURL::parse("https://Example.com/"), WebURL::parse("https://example.com/"));
    EXPECT_EQ(WebURL::parse("https://example.com/"), WebURL::parse("https://example.com/"));
}

TEST(WebURL, RefusesOtherSchemes)
{
    for (const char* text :
         {"ftp://host/p", "file:///etc/passwd", "javascript:void", "mailto:a@b", "httpss://host/",
          "ws://host/", "briskenroost://host/", "data:text/plain,a", "https+x://host/"}) {
        EXPECT_FALSE(WebURL::parse(text)) << text;
    }
}

TEST(WebURL, RefusesAnAddressWithoutAHost)
{
    for (const char* text :
         {"https:", "https:/", "https://", "https:///", "https:///p", "https://?q", "https://#f",
          "https://:443/", "https://user@/", "https:host", "https:/host", "http:p/q"}) {
        EXPECT_FALSE(WebURL::parse(text)) << text;
    }
}

TEST(WebURL, RefusesWhatIsNoAddress)
{
    for (const std::string& text : {std::string{},
                                    std::string{" "},
                                    std::string{"host"},
                                    std::string{"//host/"},
                                    std::string{"/p"},
                                    std::string{"://host"},
                                    std::string{"https//host"},
                                    std::string{" https://host/"},
                                    std::string{"https://host/ "},
                                    std::string{"https://ho st/"},
                                    std::string{"https://host/a b"},
                                    std::string{"https://host:99999/"},
                                    std::string{"https://host:a/"},
                                    std::string{"https://[::1/"},
                                    std::string{"https://host/%zz"},
                                    std::string{"https://host/%2"},
                                    std::string{"https://host\n/"},
                                    std::string{"https://host/\n"},
                                    std::string{"\nhttps://host/"},
                                    std::string{"https://host/<a>"},
                                    std::string{"https://ho\"st/"},
                                    std::string{"https://a@b@c/"},
                                    std::string("https://host/\0", 14),
                                    std::string("https://ho\0st/", 14),
                                    std::string{"https://\xFF/"}}) {
        EXPECT_FALSE(WebURL::parse(text)) << text;
    }
}

QByteArray appended(const char* base)
{
    return appendingPath(QUrl(QString::fromUtf8(base)), u"api/roost/v1/widget").toEncoded();
}

TEST(AppendingPath, AppendsAPathWithOneSlashBetween)
{
    EXPECT_EQ(appended("https://a.example"), "https://a.example/api/roost/v1/widget");
    EXPECT_EQ(appended("https://a.example/"), "https://a.example/api/roost/v1/widget");
    EXPECT_EQ(appended("http://127.0.0.1:8080"), "http://127.0.0.1:8080/api/roost/v1/widget");
    EXPECT_EQ(appended("http://[::1]:8080/"), "http://[::1]:8080/api/roost/v1/widget");
}

TEST(AppendingPath, KeepsTheLastSegmentOfTheBase)
{
    EXPECT_EQ(appended("https://a.example/base"), "https://a.example/base/api/roost/v1/widget");
    EXPECT_EQ(appended("https://a.example/base/"), "https://a.example/base/api/roost/v1/widget");
    EXPECT_EQ(appended("https://a.example/one/two.html"),
              "https://a.example/one/two.html/api/roost/v1/widget");
}

TEST(AppendingPath, KeepsTheBaseByteForByte)
{
    EXPECT_EQ(appended("https://a.example/a%2Fb%20c%25"),
              "https://a.example/a%2Fb%20c%25/api/roost/v1/widget");
    EXPECT_EQ(appended("https://a.example/%C3%BC/../x"), "https://a.example/%C3%BC/../x/api/roost/v1/widget");
}

TEST(AppendingPath, DropsTheQueryAndTheFragmentOfTheBase)
{
    EXPECT_EQ(appended("https://a.example/base?x=1#y"), "https://a.example/base/api/roost/v1/widget");
    EXPECT_EQ(appended("https://a.example?x=1"), "https://a.example/api/roost/v1/widget");
}

} // namespace
} // namespace roost
