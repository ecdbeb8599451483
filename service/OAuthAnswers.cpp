#include "service/OAuthAnswers.h"

#include "model/JsonDecode.h"
#include "model/RoostJSON.h"
#include "service/OAuthRecords.h"
#include "service/SecureURL.h"

#include <QByteArray>

#include <algorithm>

namespace roost::OAuthAnswers {

namespace {

using Kind = RoostAuthError::Kind;

constexpr int okStatus = 200;
constexpr int createdStatus = 201;

std::unexpected<RoostAuthError> malformed()
{
    return std::unexpected(RoostAuthError{Kind::malformedResponse, 0, {}});
}

template <class Record>
Meaning<Record> documentIn(const Answer& answer)
{
    if (answer.status != okStatus) {
        return std::unexpected(RoostAuthError::unexpectedResponse(answer.status));
    }
    auto document = RoostJSON::decoder().decode<Record>(answer.body);
    if (!document) {
        return malformed();
    }
    return *std::move(document);
}

bool offersS256(const AuthorizationServerMetadata& metadata)
{
    const auto& methods = metadata.codeChallengeMethodsSupported;
    return methods && std::ranges::find(*methods, "S256") != methods->end();
}

std::string defaultResource(const WebURL& issuer)
{
    std::string text = issuer.text();
    if (text.ends_with('/')) {
        text.pop_back();
    }
    return text + "/mcp";
}

/// Seconds as the server sent them, kept so small that they can be added to any date.
std::chrono::seconds lifetime(std::optional<std::int64_t> expiresIn)
{
    constexpr std::int64_t hour = 3600;
    constexpr std::int64_t century = 100 * 365 * 24 * hour;
    return std::chrono::seconds{std::clamp(expiresIn.value_or(hour), -century, century)};
}

} // namespace

Meaning<OAuthEndpoints> endpoints(const Answer& answer, const QUrl& baseURL)
{
    const auto metadata = documentIn<AuthorizationServerMetadata>(answer);
    if (!metadata) {
        return std::unexpected(metadata.error());
    }
    if (!offersS256(*metadata)) {
        return std::unexpected(
            RoostAuthError::unsupportedServer("This server does not accept PKCE with S256."));
    }
    const auto issuer = secureURL(metadata->issuer);
    const auto authorization = secureURL(metadata->authorizationEndpoint);
    const auto token = secureURL(metadata->tokenEndpoint);
    const auto registration = secureURL(metadata->registrationEndpoint);
    for (const auto* checked : {&issuer, &authorization, &token, &registration}) {
        if (!*checked) {
            return std::unexpected(checked->error());
        }
    }
    if (!sameOrigin(issuer->url(), baseURL)) {
        return std::unexpected(RoostAuthError{Kind::issuerMismatch, 0, {}});
    }
    return OAuthEndpoints{*issuer,
                          *authorization,
                          *token,
                          *registration,
                          defaultResource(*issuer),
                          metadata->authorizationResponseIssParameterSupported.value_or(false)};
}

std::string resource(const Answer& answer)
{
    const auto metadata = documentIn<ProtectedResourceMetadata>(answer);
    return metadata ? metadata->resource.value_or("") : "";
}

Meaning<std::string> registeredClient(const Answer& answer)
{
    if (answer.status != okStatus && answer.status != createdStatus) {
        return std::unexpected(oauthError(answer));
    }
    auto client = RoostJSON::decoder().decode<RegisteredClient>(answer.body);
    if (!client || client->clientID.empty()) {
        return malformed();
    }
    return std::move(client->clientID);
}

Meaning<TokenSet> tokens(const Answer& answer, Date now)
{
    if (answer.status != okStatus) {
        return std::unexpected(oauthError(answer));
    }
    const auto response = documentIn<TokenResponse>(answer);
    if (!response || response->accessToken.empty() || response->refreshToken.value_or("").empty() ||
        QByteArray::fromStdString(response->tokenType).toLower() != "bearer") {
        return malformed();
    }
    return TokenSet{response->accessToken, *response->refreshToken, now + lifetime(response->expiresIn),
                    response->scope.value_or("")};
}

RoostAuthError oauthError(const Answer& answer)
{
    if (const auto body = RoostJSON::decoder().decode<OAuthErrorBody>(answer.body)) {
        if (body->error == "invalid_grant") {
            return {Kind::invalidGrant, 0, {}};
        }
        if (body->error == "invalid_client") {
            return {Kind::invalidClient, 0, {}};
        }
    }
    return RoostAuthError::unexpectedResponse(answer.status);
}

} // namespace roost::OAuthAnswers
