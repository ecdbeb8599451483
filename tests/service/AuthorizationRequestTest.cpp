#include "service/AuthorizationRequest.h"

#include "tests/support/OAuthFixture.h"

#include <gtest/gtest.h>

namespace roost::test {

namespace {

using Kind = RoostAuthError::Kind;

const std::string callback = "briskenroost://oauth/callback";

AuthorizationRequest request(bool issuerPromised = false)
{
    AuthorizationRequest made{*WebURL::parse("https://roost.example/oauth/authorize?state=S"),
                              "S",
                              "verifier",
                              callback,
                              endpointsOfExample(),
                              "client"};
    made.endpoints.issuerInResponse = issuerPromised;
    return made;
}

std::expected<std::string, RoostAuthError> codeIn(const std::string& address, bool issuerPromised = false)
{
    return authorizationCode(address, request(issuerPromised));
}

void expectRefused(const std::string& address, Kind kind, bool issuerPromised = false)
{
    const auto code = codeIn(address, issuerPromised);
    ASSERT_FALSE(code.has_value()) << address;
    EXPECT_EQ(code.error().kind, kind) << address;
}

} // namespace

TEST(AuthorizationCode, IsTakenFromTheCallback)
{
    EXPECT_EQ(codeIn(callback + "?code=abc&state=S"), "abc");
    EXPECT_EQ(codeIn(callback + "?state=S&code=a%2Fb+c%20d%2B"), "a/b c d+");
    EXPECT_EQ(codeIn(callback + "?state=S&code=abc#fragment?state=X"), "abc");
}

TEST(AuthorizationCode, ComesToTheExpectedAddressAlone)
{
    EXPECT_EQ(codeIn("BriskenRoost://OAuth/callback?code=abc&state=S"), "abc");
    for (const std::string address :
         {"otherscheme://oauth/callback", "briskenroost://other/callback", "briskenroost://oauth/other",
          "briskenroost://oauth/Callback", "briskenroost://oauth/callback/", "briskenroost://oauth",
          "briskenroost:oauth/callback", "briskenroost:///callback", "https://oauth/callback", "", "%zz"}) {
        expectRefused(address + "?code=abc&state=S", Kind::invalidCallback);
    }
    expectRefused(callback + "?code=abc&state=S&x=%zz", Kind::invalidCallback);
    expectRefused(callback + "?code=a bc&state=S", Kind::invalidCallback);
}

TEST(AuthorizationCode, NeedsARedirectAddressThatIsOne)
{
    AuthorizationRequest broken = request();
    broken.redirectURI = "%zz";
    const auto code = authorizationCode("%zz?code=abc&state=S", broken);
    ASSERT_FALSE(code.has_value());
    EXPECT_EQ(code.error().kind, Kind::invalidCallback);
}

TEST(AuthorizationCode, NeedsTheStateThatWasSent)
{
    expectRefused(callback, Kind::stateMismatch);
    expectRefused(callback + "?", Kind::stateMismatch);
    expectRefused(callback + "#code=abc&state=S", Kind::stateMismatch);
    expectRefused(callback + "?code=abc", Kind::stateMismatch);
    expectRefused(callback + "?code=abc&state=", Kind::stateMismatch);
    expectRefused(callback + "?code=abc&state=s", Kind::stateMismatch);
    expectRefused(callback + "?code=abc&STATE=S", Kind::stateMismatch);
}

TEST(AuthorizationCode, TakesTheFirstOfEachParameter)
{
    expectRefused(callback + "?state&code=abc&state=S", Kind::stateMismatch);
    expectRefused(callback + "?state=X&code=abc&state=S", Kind::stateMismatch);
    EXPECT_EQ(codeIn(callback + "?state=S&state=X&code=abc&code=xyz"), "abc");
    expectRefused(callback + "?state=S&code&code=abc", Kind::invalidCallback);
    EXPECT_EQ(codeIn(callback + "?state=S&error&error=access_denied&code=abc"), "abc");
}

TEST(AuthorizationCode, ComparesTheIssuerWithoutOneSlashAtTheEnd)
{
    EXPECT_EQ(codeIn(callback + "?state=S&code=abc&iss=https%3A%2F%2Froost.example"), "abc");
    EXPECT_EQ(codeIn(callback + "?state=S&code=abc&iss=https://roost.example/"), "abc");
    for (const std::string issuer : {"https%3A%2F%2Froost.example%2F%2F", "https://evil.example",
                                     "HTTPS://roost.example", "https://Roost.example", ""}) {
        expectRefused(callback + "?state=S&code=abc&iss=" + issuer, Kind::issuerMismatch);
    }
}

TEST(AuthorizationCode, NeedsTheIssuerOnlyWhereItWasPromised)
{
    expectRefused(callback + "?state=S&code=abc", Kind::issuerMismatch, true);
    expectRefused(callback + "?state=S&code=abc&iss", Kind::issuerMismatch, true);
    EXPECT_EQ(codeIn(callback + "?state=S&code=abc&iss=https://roost.example", true), "abc");
    EXPECT_EQ(codeIn(callback + "?state=S&code=abc&iss", false), "abc");
}

TEST(AuthorizationCode, TellsARefusalOfTheUserFromOneOfTheServer)
{
    expectRefused(callback + "?state=S&error=access_denied", Kind::cancelled);
    expectRefused(callback + "?state=S&error=access_denied&code=abc", Kind::cancelled);
    const auto code = codeIn(callback + "?state=S&error=invalid_scope&error_description=x");
    ASSERT_FALSE(code.has_value());
    EXPECT_EQ(code.error(), RoostAuthError::denied("invalid_scope"));
    EXPECT_EQ(codeIn(callback + "?state=S&error=").error(), RoostAuthError::denied(""));
    EXPECT_EQ(codeIn(callback + "?state=S&error=Access_Denied").error(),
              RoostAuthError::denied("Access_Denied"));
}

TEST(AuthorizationCode, TakesARefusalOfAnotherRequestForAMismatch)
{
    expectRefused(callback + "?state=X&error=access_denied", Kind::stateMismatch);
    expectRefused(callback + "?error=invalid_scope", Kind::stateMismatch);
    expectRefused(callback + "?state=S&iss=https://evil.example&error=access_denied", Kind::issuerMismatch);
    expectRefused(callback + "?state=S&error=access_denied", Kind::issuerMismatch, true);
}

TEST(AuthorizationCode, IsNeverEmpty)
{
    expectRefused(callback + "?state=S&code=", Kind::invalidCallback);
    expectRefused(callback + "?state=S", Kind::invalidCallback);
}

} // namespace roost::test
