#include "programs/roost-service/AuthorizationServer.h"

#include "programs/roost-service/ProofKey.h"

#include <algorithm>

namespace roost::local {

namespace {

constexpr int secretBytes = 32;
constexpr int clientIdBytes = 16;

bool areAll(const std::vector<QByteArray>& resources, const QByteArray& resource)
{
    return std::ranges::all_of(resources, [&](const QByteArray& asked) { return asked == resource; });
}

} // namespace

AuthorizationServer::AuthorizationServer(Clock clock, RandomBytes random, Lifetimes lifetimes)
    : clock_(std::move(clock)),
      random_(std::move(random)),
      lifetimes_(lifetimes)
{
}

QByteArray AuthorizationServer::secret() { return randomText(random_, secretBytes); }

QByteArray AuthorizationServer::registerClient(RegisteredClient client)
{
    QByteArray id = randomText(random_, clientIdBytes);
    clients_.emplace(id, std::move(client));
    return id;
}

const RegisteredClient* AuthorizationServer::client(const QByteArray& id) const
{
    const auto found = clients_.find(id);
    return found == clients_.end() ? nullptr : &found->second;
}

QByteArray AuthorizationServer::issueCode(CodeTerms terms, std::string profile)
{
    const GrantId grant = ++lastGrant_;
    grants_.emplace(grant, Grant{terms.client, std::move(profile), terms.scopes, terms.resource, false});
    QByteArray code = secret();
    codes_.emplace(code, Code{grant, std::move(terms), clock_() + lifetimes_.code, false});
    return code;
}

std::expected<IssuedTokens, TokenRefusal> AuthorizationServer::exchange(const CodeExchange& request)
{
    const auto found = codes_.find(request.code);
    if (found == codes_.end() || found->second.terms.client != request.client) {
        return std::unexpected(TokenRefusal::invalidGrant);
    }
    Code& code = found->second;
    Grant& grant = grants_.at(code.grant);
    if (code.isUsed) {
        // RFC 6749 §4.1.2.
        grant.isRevoked = true;
        return std::unexpected(TokenRefusal::codeReused);
    }
    if (grant.isRevoked || clock_() >= code.expiresAt || request.redirectUri != code.terms.redirectUri ||
        !isVerifier(request.verifier) || challengeOf(request.verifier) != code.terms.challenge) {
        return std::unexpected(TokenRefusal::invalidGrant);
    }
    if (!areAll(request.resources, code.terms.resource)) {
        return std::unexpected(TokenRefusal::invalidTarget);
    }
    code.isUsed = true;
    const RegisteredClient* client = this->client(request.client);
    const bool refreshes = client != nullptr && client->refreshes;
    return issue(code.grant, grant.scopes, refreshes ? Rotation::newToken : Rotation::keepOld);
}

std::expected<IssuedTokens, TokenRefusal> AuthorizationServer::refresh(const RefreshRequest& request,
                                                                       Rotation rotation)
{
    const auto found = refreshTokens_.find(request.refreshToken);
    if (found == refreshTokens_.end() || grants_.at(found->second.grant).client != request.client) {
        return std::unexpected(TokenRefusal::invalidGrant);
    }
    RefreshToken& token = found->second;
    Grant& grant = grants_.at(token.grant);
    if (token.isSpent) {
        grant.isRevoked = true;
        return std::unexpected(TokenRefusal::refreshTokenReused);
    }
    if (!isGood(token)) {
        return std::unexpected(TokenRefusal::invalidGrant);
    }
    if (!areAll(request.resources, grant.resource)) {
        return std::unexpected(TokenRefusal::invalidTarget);
    }
    const Scopes scopes = request.scopes.value_or(grant.scopes);
    if (!isWithin(scopes, grant.scopes)) {
        return std::unexpected(TokenRefusal::invalidScope);
    }
    token.isSpent = rotation == Rotation::newToken;
    return issue(token.grant, scopes, rotation);
}

IssuedTokens AuthorizationServer::issue(GrantId grant, const Scopes& scopes, Rotation rotation)
{
    IssuedTokens tokens{secret(), std::nullopt, lifetimes_.accessToken, scopes};
    accessTokens_.emplace(tokens.accessToken, AccessToken{grant, scopes, clock_() + lifetimes_.accessToken});
    if (rotation == Rotation::newToken) {
        tokens.refreshToken = secret();
        refreshTokens_.emplace(*tokens.refreshToken,
                               RefreshToken{grant, clock_() + lifetimes_.refreshToken, false});
    }
    return tokens;
}

std::optional<AuthorizationServer::Allowed>
AuthorizationServer::allowedBy(const QByteArray& accessToken) const
{
    const auto found = accessTokens_.find(accessToken);
    if (found == accessTokens_.end() || !isGood(found->second)) {
        return std::nullopt;
    }
    return Allowed{grants_.at(found->second.grant).profile, found->second.scopes};
}

std::optional<GrantOwner> AuthorizationServer::ownerOf(const QByteArray& codeOrRefreshToken) const
{
    std::optional<GrantId> grant;
    if (const auto code = codes_.find(codeOrRefreshToken); code != codes_.end()) {
        grant = code->second.grant;
    } else if (const auto token = refreshTokens_.find(codeOrRefreshToken); token != refreshTokens_.end()) {
        grant = token->second.grant;
    }
    return grant ? std::optional(GrantOwner{std::to_string(*grant), grants_.at(*grant).profile})
                 : std::nullopt;
}

bool AuthorizationServer::isLive(const QByteArray& refreshToken) const
{
    const auto found = refreshTokens_.find(refreshToken);
    return found != refreshTokens_.end() && isGood(found->second);
}

bool AuthorizationServer::isGood(const AccessToken& token) const
{
    return !grants_.at(token.grant).isRevoked && clock_() < token.expiresAt;
}

bool AuthorizationServer::isGood(const RefreshToken& token) const
{
    return !grants_.at(token.grant).isRevoked && !token.isSpent && clock_() < token.expiresAt;
}

std::set<AuthorizationServer::GrantId> AuthorizationServer::liveGrants() const
{
    std::set<GrantId> live;
    const auto collect = [&](const auto& tokens) {
        for (const auto& [text, token] : tokens) {
            if (isGood(token)) {
                live.insert(token.grant);
            }
        }
    };
    collect(accessTokens_);
    collect(refreshTokens_);
    return live;
}

void AuthorizationServer::revokeIf(const std::function<bool(const Grant&)>& condition)
{
    for (auto& [id, grant] : grants_) {
        grant.isRevoked = grant.isRevoked || condition(grant);
    }
}

void AuthorizationServer::revokeAll()
{
    revokeIf([](const Grant&) { return true; });
}

void AuthorizationServer::revoke(const std::string& profile)
{
    revokeIf([&](const Grant& grant) { return grant.profile == profile; });
}

void AuthorizationServer::forgetClients()
{
    clients_.clear();
    revokeAll();
}

void AuthorizationServer::expireAccessTokens() { accessTokens_.clear(); }

void AuthorizationServer::expireRefreshTokens()
{
    std::erase_if(refreshTokens_, [](const auto& entry) { return !entry.second.isSpent; });
}

int AuthorizationServer::grantCount() const { return static_cast<int>(liveGrants().size()); }

int AuthorizationServer::grantCount(const std::string& profile) const
{
    return static_cast<int>(std::ranges::count_if(
        liveGrants(), [&](GrantId grant) { return grants_.at(grant).profile == profile; }));
}

} // namespace roost::local
