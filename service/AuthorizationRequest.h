#pragma once

#include "service/OAuthEndpoints.h"
#include "service/RoostAuthError.h"

#include <expected>
#include <string>
#include <string_view>

namespace roost {

/// One attempt to sign in, from the browser's start to the exchange of the code. In memory only: the verifier
/// leaves the process with the token request alone.
struct AuthorizationRequest {
    /// What the browser opens.
    WebURL url;
    /// Sent, and expected back.
    std::string state;
    /// RFC 7636 §4.1.
    std::string verifier;
    std::string redirectURI;
    OAuthEndpoints endpoints;
    std::string clientID;

    bool operator==(const AuthorizationRequest&) const = default;
};

/// The authorization code that the browser brought back in `callback`, the address as it was received. Checks
/// in this order: the address itself (`invalidCallback`), state (`stateMismatch`), issuer after RFC 9207
/// (`issuerMismatch`), error (`cancelled`, `denied`), code (`invalidCallback`). Of a parameter given twice
/// the first counts.
std::expected<std::string, RoostAuthError> authorizationCode(std::string_view callback,
                                                             const AuthorizationRequest& request);

} // namespace roost
