#pragma once

#include "service/OAuthEndpoints.h"

#include <string>

namespace roost::test {

/// The origin of the service in these tests, as its issuer writes it.
inline const std::string exampleIssuer = "https://roost.example";

/// What discovery finds there.
inline OAuthEndpoints endpointsOfExample()
{
    return {*WebURL::parse(exampleIssuer),
            *WebURL::parse(exampleIssuer + "/oauth/authorize"),
            *WebURL::parse(exampleIssuer + "/oauth/token"),
            *WebURL::parse(exampleIssuer + "/oauth/register"),
            exampleIssuer + "/mcp",
            false};
}

/// The metadata that announce them.
inline std::string metadataOfExample()
{
    return R"({"issuer":"https://roost.example","authorization_endpoint":"https://roost.example/oauth/authorize",)"
           R"("token_endpoint":"https://roost.example/oauth/token",)"
           R"("registration_endpoint":"https://roost.example/oauth/register",)"
           R"("code_challenge_methods_supported":["plain","S256"],"scopes_supported":["metrics:read"]})";
}

/// The paths of that service.
namespace path {
inline const std::string metadata = "/.well-known/oauth-authorization-server";
inline const std::string resource = "/.well-known/oauth-protected-resource";
inline const std::string registration = "/oauth/register";
inline const std::string token = "/oauth/token";
inline const std::string widget = "/api/roost/v1/widget";
} // namespace path

/// The answer to a token request that was granted.
inline std::string tokensOfExample(const std::string& access, const std::string& refresh)
{
    return R"({"access_token":")" + access + R"(","refresh_token":")" + refresh +
           R"(","token_type":"Bearer","expires_in":300,"scope":"metrics:read"})";
}

} // namespace roost::test
