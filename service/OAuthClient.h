#pragma once

#include "model/Clock.h"
#include "service/AuthFailure.h"
#include "service/AuthorizationRequest.h"
#include "service/ClientIDStore.h"
#include "service/EndpointCache.h"
#include "service/HttpSession.h"
#include "service/OAuthAnswers.h"
#include "service/OAuthEndpoints.h"
#include "service/PKCE.h"
#include "service/TokenSet.h"

#include <QCoro/QCoroTask>
#include <QUrl>

#include <memory>
#include <stop_token>
#include <string>

namespace roost {

/// The program's OAuth 2 client, a public one: finds the authorization server (RFC 8414, RFC 9728), registers
/// itself there (RFC 7591), prepares authorization requests (RFC 6749, 7636, 8707) and turns codes and
/// refresh tokens into tokens. One per program. Main thread; outlives its tasks, and so do session and
/// secrets. A stop comes back as `Stopped`. Stores nothing but the client id.
class OAuthClient {
public:
    OAuthClient(QUrl baseURL, HttpSession& session, SecretStore& secrets, Clock now);

    enum class Discovery {
        /// What was found less than an hour ago serves.
        cached,
        forced,
    };

    /// The checked endpoints of the service. `unsupportedServer` without S256, `insecureEndpoint`,
    /// `issuerMismatch`, `unexpectedResponse` for a status other than 200, `malformedResponse`,
    /// `unreachable`.
    QCoro::Task<AuthResult<OAuthEndpoints>> endpoints(Discovery discovery, std::stop_token stop) const;

    /// The client id for the issuer, registered now where there is none. While the secret store cannot tell
    /// whether there is one, it fails as that: to register again would make every refresh token worthless.
    QCoro::Task<AuthResult<std::string>> clientID(OAuthEndpoints endpoints, std::stop_token stop) const;

    /// False only when the server says for certain that it does not know the id; it is asked with a refresh
    /// token that cannot be valid.
    QCoro::Task<bool> clientIsKnown(std::string clientID, OAuthEndpoints endpoints,
                                    std::stop_token stop) const;

    /// Everything for one sign-in: discovery, a client id that the server knows, a fresh verifier and state
    /// out of `randomBytes`. A machine without any secret store gets a client id for this run.
    QCoro::Task<AuthResult<AuthorizationRequest>> authorizationRequest(PKCE::RandomBytes randomBytes,
                                                                       std::stop_token stop) const;

    /// The tokens for the code that the browser brought back for `request`. `invalidGrant`, `invalidClient`,
    /// `unexpectedResponse`, `malformedResponse` also when there is no refresh token among them.
    QCoro::Task<AuthResult<TokenSet>> exchange(std::string code, AuthorizationRequest request,
                                               std::stop_token stop) const;

    /// The next tokens of a profile; `refreshToken` is used up by it. Failures as for `exchange` and
    /// `endpoints`; with `invalidClient` the client id has been forgotten, so that the next sign-in
    /// registers. A stop counts until the refresh token is on its way; from then on the answer is waited for.
    QCoro::Task<AuthResult<TokenSet>> refresh(std::string refreshToken, std::stop_token stop) const;

    /// Tries once more to store the client ids that the secret store did not take. True when it has them all:
    /// a sign-in outlives the program only together with its client id.
    QCoro::Task<bool> storeClientIDs() const;

private:
    QCoro::Task<AuthResult<std::string>> registered(OAuthEndpoints endpoints, std::stop_token stop) const;
    QCoro::Task<AuthResult<OAuthAnswers::Answer>> send(HttpRequest request, std::stop_token stop) const;
    QCoro::Task<AuthResult<TokenSet>> tokens(HttpRequest request, std::stop_token stop) const;

    QUrl baseURL_;
    HttpSession* session_;
    Clock now_;
    std::shared_ptr<EndpointCache> cache_;
    std::shared_ptr<ClientIDStore> clientIDs_;
};

} // namespace roost
