#pragma once

#include "model/Date.h"
#include "service/OAuthEndpoints.h"
#include "service/RoostAuthError.h"
#include "service/TokenSet.h"

#include <QUrl>

#include <expected>
#include <string>

/// What the authorization server's answers mean. Pure functions of status and body.
namespace roost::OAuthAnswers {

struct Answer {
    int status = 0;
    std::string body;
};

template <class T>
using Meaning = std::expected<T, RoostAuthError>;

/// The endpoints that `metadata` (RFC 8414) announces for the service at `baseURL`, checked, with the default
/// resource. Checks in this order: status, document, S256, each endpoint, the issuer's origin.
Meaning<OAuthEndpoints> endpoints(const Answer& metadata, const QUrl& baseURL);

/// The resource in `metadata` (RFC 9728); empty when it names none, for whatever reason.
std::string resource(const Answer& metadata);

/// The client id in the answer to a registration.
Meaning<std::string> registeredClient(const Answer& answer);

/// The tokens in the answer to a token request that came at `now`. Without "expires_in" they last an hour.
Meaning<TokenSet> tokens(const Answer& answer, Date now);

/// What a refusal says: `invalidGrant` and `invalidClient` by the body's error code, otherwise
/// `unexpectedResponse`.
RoostAuthError oauthError(const Answer& answer);

} // namespace roost::OAuthAnswers
