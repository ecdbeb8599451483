#pragma once

#include "service/AuthorizationRequest.h"
#include "service/HttpSession.h"
#include "service/OAuthEndpoints.h"

#include <QUrl>

#include <expected>
#include <string>

/// What is sent to the authorization server. Pure functions.
namespace roost::OAuthRequests {

inline constexpr const char* redirectURI = "briskenroost://oauth/callback";

/// A JSON document.
HttpRequest document(QUrl url);

/// RFC 7591 §3.1, as a public client.
HttpRequest registration(const OAuthEndpoints& endpoints);

/// RFC 6749 §4.1.3 with RFC 7636 §4.5 and RFC 8707 §2.2.
HttpRequest exchange(const std::string& code, const AuthorizationRequest& request);

/// RFC 6749 §6 with RFC 8707 §2.2.
HttpRequest refresh(const std::string& refreshToken, const std::string& clientID,
                    const OAuthEndpoints& endpoints);

/// Everything that one sign-in sends and later compares with. What the authorization endpoint's query already
/// holds is kept byte for byte. `malformedResponse` when that makes no address.
std::expected<AuthorizationRequest, RoostAuthError>
authorization(OAuthEndpoints endpoints, std::string clientID, std::string verifier, std::string state);

} // namespace roost::OAuthRequests
