#include "service/OAuthAnswers.h"

#include "tests/support/OAuthFixture.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>

namespace roost::test {

namespace {

using namespace std::chrono_literals;
using Kind = RoostAuthError::Kind;
using Members = std::map<std::string, std::string>;

const Date now = Date(std::chrono::milliseconds(1'718'000'000'123));
const QUrl base{QStringLiteral("https://roost.example")};

std::string object(const Members& members)
{
    std::string text;
    for (const auto& [key, value] : members) {
        text += (text.empty() ? "{\"" : ",\"") + key + "\":" + value;
    }
    return text.empty() ? "{}" : text + "}";
}

Members metadataWith(const Members& changes)
{
    Members members{{"issuer", R"("https://roost.example")"},
                    {"authorization_endpoint", R"("https://roost.example/oauth/authorize")"},
                    {"token_endpoint", R"("https://roost.example/oauth/token")"},
                    {"registration_endpoint", R"("https://roost.example/oauth/register")"},
                    {"code_challenge_methods_supported", R"(["S256"])"}};
    for (const auto& [key, value] : changes) {
        members[key] = value;
    }
    return members;
}

OAuthAnswers::Meaning<OAuthEndpoints> endpointsIn(const Members& metadata, const QUrl& baseURL = base)
{
    return OAuthAnswers::endpoints({200, object(metadata)}, baseURL);
}

Members tokensWith(const Members& changes)
{
    Members members{{"access_token", R"("A")"},
                    {"token_type", R"("Bearer")"},
                    {"expires_in", "300"},
                    {"refresh_token", R"("R")"},
                    {"scope", R"("metrics:read")"}};
    for (const auto& [key, value] : changes) {
        members[key] = value;
    }
    return members;
}

OAuthAnswers::Meaning<TokenSet> tokensIn(const Members& answer)
{
    return OAuthAnswers::tokens({200, object(answer)}, now);
}

template <class T>
Kind kindOf(const OAuthAnswers::Meaning<T>& meaning)
{
    EXPECT_FALSE(meaning.has_value());
    return meaning ? Kind{} : meaning.error().kind;
}

} // namespace

TEST(MetadataAnswer, GivesTheEndpointsWithTheDefaultResource)
{
    EXPECT_EQ(OAuthAnswers::endpoints({200, metadataOfExample()}, base), endpointsOfExample());
}

TEST(MetadataAnswer, NeedsStatus200)
{
    for (const int status : {201, 204, 301, 307, 401, 404, 500}) {
        const auto endpoints = OAuthAnswers::endpoints({status, metadataOfExample()}, base);
        ASSERT_FALSE(endpoints.has_value());
        EXPECT_EQ(endpoints.error(), RoostAuthError::unexpectedResponse(status));
    }
}

TEST(MetadataAnswer, NeedsEveryMemberInItsType)
{
    for (const char* key : {"issuer", "authorization_endpoint", "token_endpoint", "registration_endpoint"}) {
        Members without = metadataWith({});
        without.erase(key);
        EXPECT_EQ(kindOf(endpointsIn(without)), Kind::malformedResponse) << key;
        EXPECT_EQ(kindOf(endpointsIn(metadataWith({{key, "null"}}))), Kind::malformedResponse) << key;
        EXPECT_EQ(kindOf(endpointsIn(metadataWith({{key, "7"}}))), Kind::malformedResponse) << key;
    }
    EXPECT_EQ(kindOf(endpointsIn(metadataWith({{"code_challenge_methods_supported", "\"S256\""}}))),
              Kind::malformedResponse);
    for (const char* body : {"", "[]", "<html>", "{", "\xef\xbb\xbf{}"}) {
        EXPECT_EQ(kindOf(OAuthAnswers::endpoints({200, body}, base)), Kind::malformedResponse) << body;
    }
}

TEST(MetadataAnswer, WithoutS256IsRefusedBeforeAnyAddressIsLookedAt)
{
    Members without = metadataWith({{"token_endpoint", R"("http://evil.example")"}});
    without.erase("code_challenge_methods_supported");
    const auto expected = RoostAuthError::unsupportedServer("This server does not accept PKCE with S256.");
    EXPECT_EQ(endpointsIn(without).error(), expected);
    for (const char* methods : {"null", "[]", R"(["plain"])", R"(["s256","S256 ","S512"])"}) {
        const auto endpoints = endpointsIn(metadataWith(
            {{"code_challenge_methods_supported", methods}, {"issuer", R"("http://evil.example")"}}));
        ASSERT_FALSE(endpoints.has_value()) << methods;
        EXPECT_EQ(endpoints.error(), expected) << methods;
    }
}

TEST(MetadataAnswer, NamesTheFirstInsecureEndpointInItsOrder)
{
    const std::vector<std::string> order{"issuer", "authorization_endpoint", "token_endpoint",
                                         "registration_endpoint"};
    Members metadata = metadataWith({});
    for (auto key = order.rbegin(); key != order.rend(); ++key) {
        metadata[*key] = "\"http://10.0.0.1/" + *key + "\"";
        const auto endpoints = endpointsIn(metadata);
        ASSERT_FALSE(endpoints.has_value());
        EXPECT_EQ(endpoints.error(), RoostAuthError::insecureEndpoint("http://10.0.0.1/" + *key));
    }
}

TEST(MetadataAnswer, IsRefusedWhenTheIssuerIsNotTheService)
{
    for (const char* issuer : {"https://evil.example", "https://roost.example:443", "https://roost.example.",
                               "http://localhost"}) {
        const auto quoted = "\"" + std::string{issuer} + "\"";
        EXPECT_EQ(kindOf(endpointsIn(metadataWith({{"issuer", quoted}}))), Kind::issuerMismatch) << issuer;
    }
    // An insecure endpoint is told before a foreign issuer.
    EXPECT_EQ(kindOf(endpointsIn(metadataWith({{"issuer", R"("https://evil.example")"},
                                               {"token_endpoint", R"("http://evil.example")"}}))),
              Kind::insecureEndpoint);
    EXPECT_TRUE(endpointsIn(metadataWith({{"issuer", R"("HTTPS://Roost.Example/tenant")"}})).has_value());
    // The other endpoints may lie elsewhere.
    EXPECT_TRUE(
        endpointsIn(metadataWith({{"token_endpoint", R"("https://login.example/token")"}})).has_value());
}

TEST(MetadataAnswer, DerivesTheResourceFromTheIssuersText)
{
    const auto resourceFor = [](const std::string& issuer) {
        return endpointsIn(metadataWith({{"issuer", "\"" + issuer + "\""}}))->resource;
    };
    EXPECT_EQ(resourceFor("https://roost.example/"), "https://roost.example/mcp");
    EXPECT_EQ(resourceFor("https://roost.example//"), "https://roost.example//mcp");
    EXPECT_EQ(resourceFor("https://Roost.example/%7Ea"), "https://Roost.example/%7Ea/mcp");
}

TEST(MetadataAnswer, PromisesAnIssuerOnlyWhenItSaysSo)
{
    const auto promised = [](const char* value) {
        return endpointsIn(metadataWith({{"authorization_response_iss_parameter_supported", value}}))
            ->issuerInResponse;
    };
    EXPECT_TRUE(promised("true"));
    EXPECT_FALSE(promised("false"));
    EXPECT_FALSE(promised("null"));
    EXPECT_FALSE(endpointsIn(metadataWith({}))->issuerInResponse);
}

TEST(ResourceAnswer, GivesTheResourceAsItStands)
{
    EXPECT_EQ(OAuthAnswers::resource({200, R"({"resource":"http://any thing","x":1})"}), "http://any thing");
}

TEST(ResourceAnswer, NamesNoneWhateverIsWrongWithIt)
{
    for (const char* body :
         {"{}", R"({"resource":""})", R"({"resource":null})", R"({"resource":7})", "", "<"}) {
        EXPECT_EQ(OAuthAnswers::resource({200, body}), "") << body;
    }
    EXPECT_EQ(OAuthAnswers::resource({404, R"({"resource":"https://h"})"}), "");
    EXPECT_EQ(OAuthAnswers::resource({201, R"({"resource":"https://h"})"}), "");
}

TEST(RegistrationAnswer, GivesTheClientIdWithStatus200And201)
{
    for (const int status : {200, 201}) {
        EXPECT_EQ(OAuthAnswers::registeredClient({status, R"({"client_id":"c1","client_secret":7})"}), "c1");
    }
}

TEST(RegistrationAnswer, NeedsAClientIdThatIsNotEmpty)
{
    for (const char* body :
         {R"({"client_id":""})", "{}", R"({"client_id":7})", R"(["client_id"])", "", "no"}) {
        EXPECT_EQ(kindOf(OAuthAnswers::registeredClient({201, body})), Kind::malformedResponse) << body;
    }
}

TEST(RegistrationAnswer, TellsRefusalsApart)
{
    EXPECT_EQ(kindOf(OAuthAnswers::registeredClient({400, R"({"error":"invalid_client"})"})),
              Kind::invalidClient);
    EXPECT_EQ(kindOf(OAuthAnswers::registeredClient({400, R"({"error":"invalid_grant"})"})),
              Kind::invalidGrant);
    EXPECT_EQ(OAuthAnswers::registeredClient({403, R"({"client_id":"c1"})"}).error(),
              RoostAuthError::unexpectedResponse(403));
    EXPECT_EQ(OAuthAnswers::registeredClient({202, R"({"client_id":"c1"})"}).error(),
              RoostAuthError::unexpectedResponse(202));
}

TEST(TokenAnswer, GivesTheTokensWithTheirExpiry)
{
    EXPECT_EQ(tokensIn(tokensWith({})), (TokenSet{"A", "R", now + 300s, "metrics:read"}));
}

TEST(TokenAnswer, LastsAnHourUnlessItSaysOtherwise)
{
    Members without = tokensWith({});
    without.erase("expires_in");
    EXPECT_EQ(tokensIn(without)->expiresAt, now + 3600s);
    EXPECT_EQ(tokensIn(tokensWith({{"expires_in", "null"}}))->expiresAt, now + 3600s);
    EXPECT_EQ(tokensIn(tokensWith({{"expires_in", "0"}}))->expiresAt, now);
    EXPECT_EQ(tokensIn(tokensWith({{"expires_in", "-5"}}))->expiresAt, now - 5s);
    EXPECT_EQ(kindOf(tokensIn(tokensWith({{"expires_in", "\"300\""}}))), Kind::malformedResponse);
    EXPECT_EQ(kindOf(tokensIn(tokensWith({{"expires_in", "0.5"}}))), Kind::malformedResponse);
}

TEST(TokenAnswer, KeepsTheOrderOfTimeForAnyLifetime)
{
    using Limits = std::numeric_limits<std::int64_t>;
    EXPECT_GT(tokensIn(tokensWith({{"expires_in", std::to_string(Limits::max())}}))->expiresAt,
              now + 24h * 365);
    EXPECT_LT(tokensIn(tokensWith({{"expires_in", std::to_string(Limits::min())}}))->expiresAt,
              now - 24h * 365);
}

TEST(TokenAnswer, TakesBearerInAnyCaseAndNoOtherType)
{
    for (const char* type : {"bearer", "Bearer", "BEARER", "bEaReR"}) {
        EXPECT_TRUE(tokensIn(tokensWith({{"token_type", "\"" + std::string{type} + "\""}})).has_value())
            << type;
    }
    for (const char* type : {"", "mac", "DPoP", "bearer ", "b\\u0000earer"}) {
        EXPECT_EQ(kindOf(tokensIn(tokensWith({{"token_type", "\"" + std::string{type} + "\""}}))),
                  Kind::malformedResponse)
            << type;
    }
}

TEST(TokenAnswer, NeedsBothTokensAndTheType)
{
    for (const char* key : {"access_token", "token_type", "refresh_token"}) {
        Members without = tokensWith({});
        without.erase(key);
        EXPECT_EQ(kindOf(tokensIn(without)), Kind::malformedResponse) << key;
        for (const char* value : {"\"\"", "null", "7"}) {
            EXPECT_EQ(kindOf(tokensIn(tokensWith({{key, value}}))), Kind::malformedResponse) << key << value;
        }
    }
    EXPECT_EQ(kindOf(OAuthAnswers::tokens({200, "<html>"}, now)), Kind::malformedResponse);
}

TEST(TokenAnswer, HasAnEmptyScopeWhereNoneWasSent)
{
    Members without = tokensWith({});
    without.erase("scope");
    EXPECT_EQ(tokensIn(without)->scope, "");
}

TEST(TokenAnswer, WithAnotherStatusIsARefusalWhateverItHolds)
{
    for (const int status : {201, 204, 302}) {
        EXPECT_EQ(OAuthAnswers::tokens({status, object(tokensWith({}))}, now).error(),
                  RoostAuthError::unexpectedResponse(status));
    }
    EXPECT_EQ(kindOf(OAuthAnswers::tokens({400, R"({"error":"invalid_grant"})"}, now)), Kind::invalidGrant);
}

TEST(OAuthError, KnowsTwoCodesExactlyWhateverTheStatus)
{
    for (const int status : {400, 401, 403, 500}) {
        EXPECT_EQ(OAuthAnswers::oauthError({status, R"({"error":"invalid_grant"})"}).kind,
                  Kind::invalidGrant);
        EXPECT_EQ(
            OAuthAnswers::oauthError({status, R"({"error":"invalid_client","error_description":"x"})"}).kind,
            Kind::invalidClient);
        for (const char* body : {R"({"error":"invalid_request"})", R"({"error":"Invalid_Grant"})",
                                 R"({"error":"invalid_grant "})", R"({"error":7})", R"({"error":null})",
                                 R"("invalid_grant")", "invalid_grant", "<html>", ""}) {
            EXPECT_EQ(OAuthAnswers::oauthError({status, body}), RoostAuthError::unexpectedResponse(status))
                << body;
        }
    }
}

} // namespace roost::test
