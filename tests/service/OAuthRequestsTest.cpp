#include "service/OAuthRequests.h"

#include "service/PKCE.h"
#include "tests/support/OAuthFixture.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace roost::test {

namespace {

using Method = HttpRequest::Method;
using Headers = std::vector<std::pair<QByteArray, QByteArray>>;

const Headers formHeaders{{"Content-Type", "application/x-www-form-urlencoded"},
                          {"Accept", "application/json"}};

AuthorizationRequest authorizationAt(const std::string& endpoint)
{
    OAuthEndpoints endpoints = endpointsOfExample();
    endpoints.authorizationEndpoint = *WebURL::parse(endpoint);
    return *OAuthRequests::authorization(endpoints, "client+1", std::string(43, 'A'), std::string(22, 'A'));
}

/// What every authorization request of these tests adds to its endpoint.
const std::string added = "response_type=code&client_id=client%2B1"
                          "&redirect_uri=briskenroost%3A%2F%2Foauth%2Fcallback"
                          "&code_challenge=DwBzhbb51LfusnSGBa_hqYSgo7-j8BTQnip4TOnlzRo"
                          "&code_challenge_method=S256&state=AAAAAAAAAAAAAAAAAAAAAA&scope=metrics%3Aread"
                          "&resource=https%3A%2F%2Froost.example%2Fmcp";

} // namespace

TEST(DocumentRequest, AsksForJson)
{
    const HttpRequest request = OAuthRequests::document(QUrl{QStringLiteral("https://roost.example/x")});
    EXPECT_EQ(request.method, Method::get);
    EXPECT_EQ(request.url, QUrl{QStringLiteral("https://roost.example/x")});
    EXPECT_EQ(request.headers, (Headers{{"Accept", "application/json"}}));
    EXPECT_EQ(request.timeout, std::chrono::seconds{60});
    EXPECT_EQ(request.bodyLimit, 256 * 1024);
}

TEST(RegistrationRequest, IntroducesAPublicClient)
{
    const HttpRequest request = OAuthRequests::registration(endpointsOfExample());
    EXPECT_EQ(request.method, Method::post);
    EXPECT_EQ(request.url, endpointsOfExample().registrationEndpoint.url());
    EXPECT_EQ(request.headers, (Headers{{"Content-Type", "application/json"}}));
    EXPECT_EQ(request.timeout, std::chrono::seconds{60});
    const auto body = nlohmann::json::parse(request.body.toStdString());
    const auto expected = nlohmann::json::parse(R"({
        "client_name": "Brisken Roost for Mac",
        "redirect_uris": ["briskenroost://oauth/callback"],
        "token_endpoint_auth_method": "none",
        "grant_types": ["authorization_code", "refresh_token"],
        "response_types": ["code"],
        "scope": "metrics:read posts:read channels:read"})");
    EXPECT_EQ(body, expected);
}

TEST(ExchangeRequest, SendsTheCodeWithItsProof)
{
    AuthorizationRequest authorization = authorizationAt("https://roost.example/oauth/authorize");
    authorization.verifier = "the-verifier";
    const HttpRequest request = OAuthRequests::exchange("a b/c", authorization);
    EXPECT_EQ(request.method, Method::post);
    EXPECT_EQ(request.url, endpointsOfExample().tokenEndpoint.url());
    EXPECT_EQ(request.headers, formHeaders);
    EXPECT_EQ(request.timeout, std::chrono::seconds{60});
    EXPECT_EQ(request.body, "client_id=client%2B1&code=a%20b%2Fc&code_verifier=the-verifier"
                            "&grant_type=authorization_code"
                            "&redirect_uri=briskenroost%3A%2F%2Foauth%2Fcallback"
                            "&resource=https%3A%2F%2Froost.example%2Fmcp");
}

TEST(RefreshRequest, SendsTheTokenForTheResource)
{
    const HttpRequest request = OAuthRequests::refresh("r+1", "client", endpointsOfExample());
    EXPECT_EQ(request.method, Method::post);
    EXPECT_EQ(request.url, endpointsOfExample().tokenEndpoint.url());
    EXPECT_EQ(request.headers, formHeaders);
    EXPECT_EQ(request.body, "client_id=client&grant_type=refresh_token&refresh_token=r%2B1"
                            "&resource=https%3A%2F%2Froost.example%2Fmcp");
}

TEST(AuthorizationRequest, HoldsEverythingThatIsComparedLater)
{
    const AuthorizationRequest request = authorizationAt("https://roost.example/oauth/authorize");
    EXPECT_EQ(request.url.text(), "https://roost.example/oauth/authorize?" + added);
    EXPECT_EQ(request.state, std::string(22, 'A'));
    EXPECT_EQ(request.verifier, std::string(43, 'A'));
    EXPECT_EQ(request.redirectURI, "briskenroost://oauth/callback");
    EXPECT_EQ(request.clientID, "client+1");
    EXPECT_EQ(request.endpoints, endpointsOfExample());
}

TEST(AuthorizationRequest, KeepsTheQueryOfTheEndpointByteForByte)
{
    for (const std::string endpoint :
         {"https://roost.example/a?x=%7e+%2f'%20&y", "https://roost.example/a?state=theirs",
          "https://H/?a=b&", "https://roost.example/%7Ea/?=", "https://roost.example?é=ü"}) {
        EXPECT_EQ(authorizationAt(endpoint).url.text(), endpoint + "&" + added);
    }
    EXPECT_EQ(authorizationAt("https://roost.example/a?").url.text(), "https://roost.example/a?" + added);
    EXPECT_EQ(authorizationAt("https://roost.example").url.text(), "https://roost.example?" + added);
}

TEST(AuthorizationRequest, AddsItsQueryBeforeAFragment)
{
    EXPECT_EQ(authorizationAt("https://roost.example/a#b?c").url.text(),
              "https://roost.example/a?" + added + "#b?c");
    EXPECT_EQ(authorizationAt("https://roost.example/a?x=1#b").url.text(),
              "https://roost.example/a?x=1&" + added + "#b");
}

TEST(AuthorizationRequest, EncodesWhateverTheResourceHolds)
{
    OAuthEndpoints endpoints = endpointsOfExample();
    endpoints.resource = "a&state=x#\xff \n";
    const auto request = OAuthRequests::authorization(endpoints, "c", "v", "s");
    ASSERT_TRUE(request.has_value());
    EXPECT_THAT(request->url.text(), testing::EndsWith("&resource=a%26state%3Dx%23%FF%20%0A"));
}

} // namespace roost::test
