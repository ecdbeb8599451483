#pragma once

#include "model/Clock.h"
#include "programs/roost-service/RandomBytes.h"
#include "programs/roost-service/Scopes.h"

#include <QByteArray>

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace roost::local {

/// Longer than any run.
inline constexpr std::chrono::seconds longestLifetime{10LL * 366 * 86'400};

/// How long what is handed out from now on stays good.
struct Lifetimes {
    std::chrono::seconds accessToken{3600};
    std::chrono::seconds refreshToken{30 * 86'400};
    std::chrono::seconds code{60};
};

/// A client as it registered itself (RFC 7591); always a public one.
struct RegisteredClient {
    QByteArray name;
    std::vector<QByteArray> redirectUris;
    Scopes scopes;
    /// Whether it asked for refresh tokens.
    bool refreshes = true;
};

/// What an authorization code is bound to.
struct CodeTerms {
    QByteArray client;
    QByteArray redirectUri;
    /// RFC 7636, method "S256".
    QByteArray challenge;
    Scopes scopes;
    /// RFC 8707.
    QByteArray resource;
};

struct CodeExchange {
    QByteArray client;
    QByteArray code;
    QByteArray redirectUri;
    QByteArray verifier;
    /// May be empty: the resource of the code.
    std::vector<QByteArray> resources;
};

struct RefreshRequest {
    QByteArray client;
    QByteArray refreshToken;
    /// May narrow what was granted; nothing: all of it.
    std::optional<Scopes> scopes;
    /// May be empty: the resource of the grant.
    std::vector<QByteArray> resources;
};

struct IssuedTokens {
    QByteArray accessToken;
    /// Nothing when the client did not ask for any, or when the old one stays.
    std::optional<QByteArray> refreshToken;
    std::chrono::seconds expiresIn;
    Scopes scopes;
};

/// Why a token request is refused.
enum class TokenRefusal {
    /// Unknown, expired, revoked, another client's, or not fitting what the code is bound to.
    invalidGrant,
    /// Used before; the whole grant is revoked now.
    codeReused,
    refreshTokenReused,
    /// More than what was granted.
    invalidScope,
    /// Another resource than that of the grant.
    invalidTarget,
};

/// Whether a refresh puts a new refresh token in the place of the old one.
enum class Rotation { newToken, keepOld };

/// Whose a code or a token is.
struct GrantOwner {
    /// Names the grant within this run; no secret.
    std::string grant;
    std::string profile;
};

/// Clients, codes and grants of an OAuth 2 authorization server, without any HTTP: single-use codes bound by
/// PKCE, rotating refresh tokens of which at most one per grant is live, and the revocation of the whole
/// grant when a code or a refresh token comes a second time (RFC 9700 §4.14.2). Keeps what has ended, so as
/// to know it again, until it goes itself. Main thread.
class AuthorizationServer {
public:
    AuthorizationServer(Clock clock, RandomBytes random, Lifetimes lifetimes);

    /// Gives the new client's id.
    QByteArray registerClient(RegisteredClient client);

    /// Null when there is none of that id. Valid until clients are forgotten.
    const RegisteredClient* client(const QByteArray& id) const;

    /// A user's consent: a code for `profile`, good once.
    QByteArray issueCode(CodeTerms terms, std::string profile);

    std::expected<IssuedTokens, TokenRefusal> exchange(const CodeExchange& request);
    std::expected<IssuedTokens, TokenRefusal> refresh(const RefreshRequest& request,
                                                      Rotation rotation = Rotation::newToken);

    /// Profile and scopes of an access token that is good now.
    struct Allowed {
        std::string profile;
        Scopes scopes;
    };
    std::optional<Allowed> allowedBy(const QByteArray& accessToken) const;

    /// Whose a code or a refresh token is or was.
    std::optional<GrantOwner> ownerOf(const QByteArray& codeOrRefreshToken) const;

    /// Whether a refresh with it would be granted now.
    bool isLive(const QByteArray& refreshToken) const;

    void revokeAll();
    void revoke(const std::string& profile);
    /// Ends their grants too.
    void forgetClients();
    /// Every access token, or refresh token, that is out now.
    void expireAccessTokens();
    void expireRefreshTokens();

    const Lifetimes& lifetimes() const { return lifetimes_; }
    void setLifetimes(Lifetimes lifetimes) { lifetimes_ = lifetimes; }

    int clientCount() const { return static_cast<int>(clients_.size()); }
    /// Grants with a token that is good now.
    int grantCount() const;
    int grantCount(const std::string& profile) const;

private:
    using GrantId = std::uint64_t;
    struct Grant {
        QByteArray client;
        std::string profile;
        Scopes scopes;
        QByteArray resource;
        bool isRevoked = false;
    };
    struct Code {
        GrantId grant;
        CodeTerms terms;
        Date expiresAt;
        bool isUsed = false;
    };
    struct AccessToken {
        GrantId grant;
        Scopes scopes;
        Date expiresAt;
    };
    struct RefreshToken {
        GrantId grant;
        Date expiresAt;
        bool isSpent = false;
    };

    IssuedTokens issue(GrantId grant, const Scopes& scopes, Rotation rotation);
    bool isGood(const AccessToken& token) const;
    bool isGood(const RefreshToken& token) const;
    std::set<GrantId> liveGrants() const;
    void revokeIf(const std::function<bool(const Grant&)>& condition);
    QByteArray secret();

    Clock clock_;
    RandomBytes random_;
    Lifetimes lifetimes_;
    std::map<QByteArray, RegisteredClient> clients_;
    std::map<GrantId, Grant> grants_;
    std::map<QByteArray, Code> codes_;
    std::map<QByteArray, AccessToken> accessTokens_;
    std::map<QByteArray, RefreshToken> refreshTokens_;
    GrantId lastGrant_ = 0;
};

} // namespace roost::local
