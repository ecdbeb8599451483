#include "service/AccountSession.h"

#include <utility>

namespace roost {

namespace {

using Kind = RoostAuthError::Kind;

/// What a refresh gives that belongs to an older sign-in. Nobody sees it: `asOfNow` says what there is
/// instead.
const std::unexpected<AuthFailure> overtaken{RoostAuthError{Kind::unreachable, 0, {}}};

std::unexpected<AuthFailure> authFailure(Kind kind)
{
    return std::unexpected<AuthFailure>{RoostAuthError{kind, 0, {}}};
}

} // namespace

AccountSession::AccountSession(std::string profileId, const OAuthClient& oauth, SecretStore& secrets,
                               RefreshLock& lock, Clock now)
    : profileId_(std::move(profileId)),
      key_("refresh-token|" + profileId_),
      oauth_(&oauth),
      secrets_(&secrets),
      lock_(&lock),
      now_(std::move(now))
{
}

QCoro::Task<std::expected<void, KeychainError>> AccountSession::adopt(TokenSet tokens)
{
    ++generation_;
    state_ = State::active;
    accessToken_ = std::move(tokens.accessToken);
    accessExpiresAt_ = tokens.expiresAt;
    return save(std::move(tokens.refreshToken));
}

QCoro::Task<AuthResult<std::string>> AccountSession::validAccessToken(std::stop_token stop)
{
    return currentOrRefreshed(shared_from_this(), std::move(stop));
}

QCoro::Task<AuthResult<std::string>> AccountSession::replaceAccessToken(std::string rejected,
                                                                        std::stop_token stop)
{
    const std::optional<std::string> current = currentToken();
    if (!current || current == rejected) {
        accessToken_.reset();
        accessExpiresAt_.reset();
    }
    return currentOrRefreshed(shared_from_this(), std::move(stop));
}

QCoro::Task<bool> AccountSession::signOut()
{
    becomeSignedOut();
    return secrets_->remove(key_);
}

QCoro::Task<void> AccountSession::settled() { return allSettled(shared_from_this()); }

QCoro::Task<void> AccountSession::allSettled(Self self)
{
    while (const std::shared_ptr<Inflight> inflight = self->inflight_) {
        QCoro::Task<std::optional<Refreshed>> waiting = inflight->wait({});
        co_await waiting;
    }
}

QCoro::Task<AuthResult<std::string>> AccountSession::currentOrRefreshed(Self self, std::stop_token stop)
{
    if (std::optional<std::string> token = self->currentToken()) {
        co_return *std::move(token);
    }
    if (stop.stop_requested()) {
        co_return std::unexpected(Stopped{});
    }
    QCoro::Task<AuthResult<std::string>> refreshing = refresh(self, std::move(stop));
    co_return co_await refreshing;
}

QCoro::Task<AuthResult<std::string>> AccountSession::refresh(Self self, std::stop_token stop)
{
    std::shared_ptr<Inflight> inflight = self->inflight_;
    if (!inflight) {
        inflight = std::make_shared<Inflight>();
        self->inflight_ = inflight;
        // Goes on by itself, whatever becomes of those that wait for it.
        runRefresh(self, inflight);
    }
    QCoro::Task<std::optional<Refreshed>> waiting = inflight->wait(std::move(stop));
    const std::optional<Refreshed> refreshed = co_await waiting;
    if (!refreshed) {
        co_return std::unexpected(Stopped{});
    }
    co_return self->asOfNow(*refreshed);
}

QCoro::Task<void> AccountSession::runRefresh(Self self, std::shared_ptr<Inflight> inflight)
{
    QCoro::Task<Refreshed> performing = performRefresh(self);
    Refreshed refreshed = co_await performing;
    // Before anybody hears of it: who asks again then asks anew.
    self->inflight_.reset();
    inflight->complete(std::move(refreshed));
}

QCoro::Task<AccountSession::Refreshed> AccountSession::performRefresh(Self self)
{
    const std::uint64_t begun = self->generation_;
    if (self->state_ == State::signedOut) {
        co_return self->failed(RoostAuthError{Kind::invalidGrant, 0, {}});
    }
    QCoro::Task<std::unique_ptr<RefreshLock::Held>> locking = self->lock_->acquire(self->profileId_, {});
    const std::unique_ptr<RefreshLock::Held> held = co_await locking;
    if (!held) {
        co_return Refreshed{std::unexpected(RefreshBlocked{}), begun};
    }
    QCoro::Task<Refreshed> refreshing = refreshUnderLock(self, begun);
    co_return co_await refreshing;
}

/// Chooses the refresh token, only now: another process may have been refreshing until a moment ago, and this
/// one may have signed out or in since `begun`.
QCoro::Task<AccountSession::Refreshed> AccountSession::refreshUnderLock(Self self, std::uint64_t begun)
{
    while (true) {
        const std::uint64_t generation = self->generation_;
        if (generation != begun && (self->state_ == State::signedOut || self->currentToken())) {
            co_return Refreshed{overtaken, begun};
        }
        std::optional<std::string> refreshToken = self->unsavedRefreshToken_;
        if (!refreshToken) {
            auto reading = self->secrets_->get(self->key_);
            std::expected<std::optional<std::string>, SecretsUnavailable> stored = co_await reading;
            if (generation != self->generation_) {
                continue;
            }
            if (!stored) {
                co_return self->failed(stored.error());
            }
            refreshToken = *std::move(stored);
        }
        if (!refreshToken) {
            self->becomeSignedOut();
            co_return self->failed(RoostAuthError{Kind::invalidGrant, 0, {}});
        }
        QCoro::Task<Refreshed> exchanging = exchange(self, *std::move(refreshToken));
        co_return co_await exchanging;
    }
}

QCoro::Task<AccountSession::Refreshed> AccountSession::exchange(Self self, std::string refreshToken)
{
    const std::uint64_t generation = self->generation_;
    QCoro::Task<AuthResult<TokenSet>> refreshing = self->oauth_->refresh(std::move(refreshToken), {});
    AuthResult<TokenSet> answer = co_await refreshing;
    if (generation != self->generation_) {
        co_return Refreshed{overtaken, generation};
    }
    if (!answer) {
        Refreshed refused = self->failed(answer.error());
        if (isAuthError(answer.error(), Kind::invalidGrant) ||
            isAuthError(answer.error(), Kind::invalidClient)) {
            QCoro::Task<bool> removing = self->signOut();
            refused.generation = self->generation_;
            static_cast<void>(co_await removing);
        }
        co_return refused;
    }
    // Stored before it is of any use: the one that was sent is worth nothing any more.
    auto saving = self->save(std::move(answer->refreshToken));
    static_cast<void>(co_await saving); // what could not be stored is kept as unsaved
    if (generation == self->generation_) {
        self->accessToken_ = answer->accessToken;
        self->accessExpiresAt_ = answer->expiresAt;
    }
    co_return Refreshed{std::move(answer->accessToken), generation};
}

/// Keeps `refreshToken` as this profile's newest. Asks the store before it returns, so that the store hears
/// of signing in and out in the order in which they happen.
QCoro::Task<std::expected<void, KeychainError>> AccountSession::save(std::string refreshToken)
{
    unsavedRefreshToken_ = refreshToken;
    auto saving = secrets_->set(refreshToken, key_);
    return saved(shared_from_this(), std::move(refreshToken), generation_, std::move(saving));
}

QCoro::Task<std::expected<void, KeychainError>>
AccountSession::saved(Self self, std::string refreshToken, std::uint64_t generation,
                      QCoro::Task<std::expected<void, KeychainError>> saving)
{
    std::expected<void, KeychainError> result = co_await saving;
    if (result && generation == self->generation_ && self->unsavedRefreshToken_ == refreshToken) {
        self->unsavedRefreshToken_.reset();
    }
    co_return result;
}

/// The access token, where it has more than `leeway` left.
std::optional<std::string> AccountSession::currentToken() const
{
    if (accessToken_ && accessExpiresAt_ && *accessExpiresAt_ > now_() + leeway) {
        return accessToken_;
    }
    return std::nullopt;
}

void AccountSession::becomeSignedOut()
{
    ++generation_;
    state_ = State::signedOut;
    accessToken_.reset();
    accessExpiresAt_.reset();
    unsavedRefreshToken_.reset();
}

AccountSession::Refreshed AccountSession::failed(AuthFailure why) const
{
    return {AuthResult<std::string>(std::unexpect, std::move(why)), generation_};
}

/// What to tell a caller now: since the refresh ended another sign-in may have begun, or this one have ended.
AuthResult<std::string> AccountSession::asOfNow(const Refreshed& refreshed) const
{
    if (refreshed.generation == generation_) {
        return refreshed.token;
    }
    if (state_ == State::signedOut) {
        return authFailure(Kind::invalidGrant);
    }
    if (const std::optional<std::string> token = currentToken()) {
        return *token;
    }
    return authFailure(Kind::unreachable);
}

} // namespace roost
