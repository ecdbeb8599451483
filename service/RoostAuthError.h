#pragma once

#include <string>
#include <utility>

namespace roost {

/// What can go wrong on the OAuth side. A plain value; texts are UTF-8 and come from the server.
struct RoostAuthError {
    enum class Kind {
        /// An HTTP status that the step does not accept: `status`.
        unexpectedResponse,
        /// The authorization response carried an error other than "access_denied": `text` is its code.
        denied,
        /// A discovered endpoint is neither https nor http on this machine: `text` is the endpoint.
        insecureEndpoint,
        /// The server lacks PKCE with S256: `text` is a sentence that says so.
        unsupportedServer,
        /// No answer from the server.
        unreachable,
        /// An answer that cannot be understood.
        malformedResponse,
        /// The server rejected a code or refresh token, or there is no refresh token to send.
        invalidGrant,
        /// The server does not know the client id.
        invalidClient,
        /// The user said no, in the browser or by closing it.
        cancelled,
        /// The callback's state is missing or different.
        stateMismatch,
        /// The issuer is not the service, or the callback's issuer is missing or different.
        issuerMismatch,
        /// The callback is not the expected address or carries no code.
        invalidCallback,
    };

    Kind kind = Kind::unreachable;
    int status = 0;
    std::string text;

    bool operator==(const RoostAuthError&) const = default;

    static RoostAuthError unexpectedResponse(int status) { return {Kind::unexpectedResponse, status, {}}; }
    static RoostAuthError denied(std::string code) { return {Kind::denied, 0, std::move(code)}; }
    static RoostAuthError insecureEndpoint(std::string endpoint)
    {
        return {Kind::insecureEndpoint, 0, std::move(endpoint)};
    }
    static RoostAuthError unsupportedServer(std::string sentence)
    {
        return {Kind::unsupportedServer, 0, std::move(sentence)};
    }
};

/// "unexpectedResponse(503)", "denied(invalid_scope)", "unreachable": for log lines.
std::string describe(const RoostAuthError& error);

/// The sentence that users are shown, in English; empty for `cancelled`.
std::string messageFor(const RoostAuthError& error);

} // namespace roost
