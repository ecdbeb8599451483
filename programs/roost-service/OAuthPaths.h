#pragma once

namespace roost::local {

/// Where the authorization server answers, below the origin of the service.
inline constexpr const char* metadataPath = "/.well-known/oauth-authorization-server";
inline constexpr const char* resourcePath = "/.well-known/oauth-protected-resource";
inline constexpr const char* registrationPath = "/oauth/register";
inline constexpr const char* authorizePath = "/oauth/authorize";
inline constexpr const char* tokenPath = "/oauth/token";

/// The resource that its tokens are for (RFC 8707).
inline constexpr const char* protectedResource = "/mcp";

} // namespace roost::local
