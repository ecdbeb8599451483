#pragma once

#include "model/WebURL.h"

#include <string>

namespace roost {

/// Where and how to speak to the authorization server: what discovery found, after all checks. A plain value;
/// the addresses keep the text that the server sent.
struct OAuthEndpoints {
    WebURL issuer;
    WebURL authorizationEndpoint;
    WebURL tokenEndpoint;
    WebURL registrationEndpoint;
    /// The resource indicator of every authorization and token request (RFC 8707).
    std::string resource;
    /// The server promises "iss" in authorization responses (RFC 9207).
    bool issuerInResponse = false;

    bool operator==(const OAuthEndpoints&) const = default;
};

} // namespace roost
