#include "service/AccountSession.h"

#include <algorithm>
#include <utility>

namespace roost {

namespace {

using Kind = RoostAuthError::Kind;

/// More than one sync can outlive.
constexpr std::size_t mostRecentTokens = 8;

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
      oauth_(&oauth),
      keeper_(std::make_shared<RefreshTokenKeeper>(profileId_, secrets, lock)),
      now_(std::move(now))
{
}

QCoro::Task<std::expected<void, KeychainError>> AccountSession::adopt(TokenSet tokens)
{
    ++generation_;
    state_ = State::active;
    mayLinger_ = false;
    recentTokens_.clear();
    use(std::move(tokens.accessToken), tokens.expiresAt);
    return keeper_->save(std::move(tokens.refreshToken));
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
        forgetAccessToken();
    }
    return currentOrRefreshed(shared_from_this(), std::move(stop));
}

QCoro::Task<bool> AccountSession::signOut()
{
    becomeSignedOut();
    return removed(shared_from_this(), keeper_->remove());
}

QCoro::Task<bool> AccountSession::removed(Self self, QCoro::Task<bool> removing)
{
    const std::uint64_t generation = self->generation_;
    const bool isRemoved = co_await removing;
    if (generation == self->generation_) {
        self->mayLinger_ = !isRemoved;
    }
    co_return isRemoved;
}

QCoro::Task<bool> AccountSession::forgetLingering() { return forgotten(shared_from_this()); }

QCoro::Task<bool> AccountSession::forgotten(Self self)
{
    auto locking = self->keeper_->lock({});
    const RefreshTokenKeeper::Lock lock = co_await locking;
    if (lock && self->mayLinger_) {
        auto removing = removed(self, self->keeper_->removeOwn());
        co_await removing;
    }
    co_return !self->mayLinger_;
}

QCoro::Task<bool> AccountSession::signOutOf(std::string accessToken)
{
    return signedOutOf(shared_from_this(), std::move(accessToken));
}

QCoro::Task<bool> AccountSession::saveUnsaved() { return keeper_->saveUnsaved(quitting_.get_token()); }

void AccountSession::quit() { quitting_.request_stop(); }

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
    if (self->isQuitting()) {
        co_return std::unexpected(Stopped{});
    }
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
    // Twice where a new sign-in overtook the first refresh and needs one of its own.
    for (bool isLast = false;; isLast = true) {
        std::shared_ptr<Inflight> inflight = self->inflight_;
        if (!inflight) {
            inflight = std::make_shared<Inflight>();
            self->inflight_ = inflight;
            // Goes on by itself, whatever becomes of those that wait for it.
            runRefresh(self, inflight);
        }
        QCoro::Task<std::optional<Refreshed>> waiting = inflight->wait(stop);
        const std::optional<Refreshed> refreshed = co_await waiting;
        if (!refreshed) {
            co_return std::unexpected(Stopped{});
        }
        const bool serves = refreshed->generation == self->generation_ || self->state_ == State::signedOut ||
                            self->currentToken();
        if (isLast || serves) {
            co_return self->asOfNow(*refreshed);
        }
    }
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
    auto locking = self->keeper_->lock(self->quitting_.get_token());
    const RefreshTokenKeeper::Lock lock = co_await locking;
    if (!lock && self->isQuitting()) {
        co_return Refreshed{std::unexpected(Stopped{}), begun};
    }
    if (!lock) {
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
        auto choosing = self->keeper_->newest();
        std::expected<std::optional<std::string>, SecretsUnavailable> refreshToken = co_await choosing;
        if (generation != self->generation_) {
            continue;
        }
        if (!refreshToken) {
            co_return self->failed(refreshToken.error());
        }
        if (!*refreshToken) {
            self->becomeSignedOut();
            co_return self->failed(RoostAuthError{Kind::invalidGrant, 0, {}});
        }
        QCoro::Task<Refreshed> exchanging = exchange(self, **std::move(refreshToken));
        co_return co_await exchanging;
    }
}

QCoro::Task<AccountSession::Refreshed> AccountSession::exchange(Self self, std::string refreshToken)
{
    const std::uint64_t generation = self->generation_;
    QCoro::Task<AuthResult<TokenSet>> refreshing =
        self->oauth_->refresh(std::move(refreshToken), self->quitting_.get_token());
    AuthResult<TokenSet> answer = co_await refreshing;
    if (generation != self->generation_) {
        co_return Refreshed{overtaken, generation};
    }
    if (!answer) {
        if (!isAuthError(answer.error(), Kind::invalidGrant) &&
            !isAuthError(answer.error(), Kind::invalidClient)) {
            co_return self->failed(answer.error());
        }
        QCoro::Task<bool> looking = isReplaced(self);
        const bool isOver = !co_await looking;
        if (generation != self->generation_) {
            co_return Refreshed{overtaken, generation};
        }
        if (!isOver) {
            co_return self->failed(RoostAuthError{Kind::unreachable, 0, {}});
        }
        QCoro::Task<bool> removing = self->signOut();
        Refreshed refused = self->failed(answer.error());
        static_cast<void>(co_await removing);
        co_return refused;
    }
    // Stored before it is of any use: the one that was sent is worth nothing any more.
    auto saving = self->keeper_->save(std::move(answer->refreshToken));
    static_cast<void>(co_await saving); // what could not be stored is kept as unsaved
    if (generation == self->generation_) {
        self->use(answer->accessToken, answer->expiresAt);
    }
    co_return Refreshed{std::move(answer->accessToken), generation};
}

/// Whether another process has signed the profile in since; if so, this session goes on with that.
QCoro::Task<bool> AccountSession::isReplaced(Self self)
{
    const std::uint64_t generation = self->generation_;
    QCoro::Task<bool> asking = self->keeper_->isReplaced();
    const bool isReplaced = co_await asking;
    if (isReplaced && generation == self->generation_) {
        self->keeper_->dropUnsaved();
        self->forgetAccessToken();
    }
    co_return isReplaced;
}

QCoro::Task<bool> AccountSession::signedOutOf(Self self, std::string accessToken)
{
    if (self->state_ == State::signedOut) {
        co_return true;
    }
    if (std::ranges::count(self->recentTokens_, accessToken) == 0) {
        co_return false;
    }
    const std::uint64_t generation = self->generation_;
    auto locking = self->keeper_->lock(self->quitting_.get_token());
    const RefreshTokenKeeper::Lock lock = co_await locking;
    if (lock && generation == self->generation_) {
        QCoro::Task<bool> looking = isReplaced(self);
        const bool isOver = !co_await looking;
        if (isOver && generation == self->generation_) {
            QCoro::Task<bool> removing = self->signOut();
            // Signed out for this run even where the store cannot be told.
            static_cast<void>(co_await removing);
            co_return true;
        }
    }
    co_return self->state_ == State::signedOut;
}

/// The access token, where it has more than `leeway` left.
std::optional<std::string> AccountSession::currentToken() const
{
    if (accessToken_ && accessExpiresAt_ && *accessExpiresAt_ > now_() + leeway) {
        return accessToken_;
    }
    return std::nullopt;
}

void AccountSession::use(std::string accessToken, std::optional<Date> expiresAt)
{
    recentTokens_.push_back(accessToken);
    if (recentTokens_.size() > mostRecentTokens) {
        recentTokens_.pop_front();
    }
    accessToken_ = std::move(accessToken);
    accessExpiresAt_ = expiresAt;
}

void AccountSession::forgetAccessToken()
{
    accessToken_.reset();
    accessExpiresAt_.reset();
}

void AccountSession::becomeSignedOut()
{
    ++generation_;
    state_ = State::signedOut;
    recentTokens_.clear();
    forgetAccessToken();
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
