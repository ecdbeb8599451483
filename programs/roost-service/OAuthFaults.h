#pragma once

#include <QJsonArray>

#include <array>
#include <map>
#include <optional>
#include <string_view>

namespace roost::local {

/// What the authorization server can get wrong, beside the scenarios that any endpoint can meet.
enum class OAuthFault {
    // In the metadata of the authorization server.
    /// The proof keys that it accepts: none that is S256, "plain" alone, not told.
    noS256,
    plainOnly,
    noChallengeMethods,
    /// An issuer on another host.
    foreignIssuer,
    /// One address that is http to a host in a private network.
    insecureIssuer,
    insecureAuthorizationEndpoint,
    insecureTokenEndpoint,
    insecureRegistrationEndpoint,
    /// An authorization endpoint that has a query already.
    authorizationEndpointQuery,
    noRegistrationEndpoint,
    /// "iss" comes with authorization responses, but is not promised.
    issNotPromised,

    // In authorization responses.
    issNotSent,
    wrongIss,
    stateAltered,
    stateMissing,

    // In the metadata of the resource.
    resourceNotFound,
    resourceEmpty,

    // In the answers of the token endpoint: refused without a look at the request, or wrong.
    invalidClient400,
    invalidClient401,
    invalidGrant,
    tokenTypeNotBearer,
    /// A refresh gives no new refresh token, and the old one stays good.
    noNewRefreshToken,
    noExpiresIn,

    // In the answers to registrations.
    registrationOk,
    emptyClientId,
};

/// The texts of the faults, in their order.
inline constexpr std::array<std::string_view, 25> oauthFaultNames{
    "no-s256",
    "plain-only",
    "no-challenge-methods",
    "foreign-issuer",
    "insecure-issuer",
    "insecure-authorization-endpoint",
    "insecure-token-endpoint",
    "insecure-registration-endpoint",
    "authorization-endpoint-query",
    "no-registration-endpoint",
    "iss-not-promised",
    "iss-not-sent",
    "wrong-iss",
    "state-altered",
    "state-missing",
    "resource-not-found",
    "resource-empty",
    "invalid-client-400",
    "invalid-client-401",
    "invalid-grant",
    "token-type-not-bearer",
    "no-new-refresh-token",
    "no-expires-in",
    "registration-200",
    "empty-client-id",
};

/// Which faults are in force. A plain value; main thread.
class OAuthFaults {
public:
    /// `times`: how many requests meet it; nothing: all. At least 1.
    void set(OAuthFault fault, std::optional<int> times = std::nullopt);
    void end(OAuthFault fault) { inForce_.erase(fault); }
    void clear() { inForce_.clear(); }

    /// Whether the request in hand meets `fault`, which is counted down by it.
    bool meets(OAuthFault fault);

    /// What is in force, each with its kind and the times left.
    QJsonArray toJson() const;

private:
    std::map<OAuthFault, std::optional<int>> inForce_;
};

/// The fault of that name.
std::optional<OAuthFault> oauthFaultNamed(std::string_view name);

} // namespace roost::local
