#pragma once

#include "model/Clock.h"
#include "service/AuthFailure.h"
#include "service/Completion.h"
#include "service/OAuthClient.h"
#include "service/RefreshLock.h"
#include "service/RefreshTokenKeeper.h"
#include "service/SecretStore.h"
#include "service/TokenSet.h"

#include <QCoro/QCoroTask>

#include <chrono>
#include <cstdint>
#include <deque>
#include <expected>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace roost {

/// The tokens of one signed-in profile while the program runs: hands out access tokens, refreshes them when
/// they run out or were refused, and keeps the refresh token, which changes with every refresh, in the secret
/// store. Access tokens live in memory only. As long as the store does not take a refresh token, this keeps
/// the profile's lock, so that no other process sends the older one; that ends with the session.
///
/// Held by `std::shared_ptr`, and kept alive by whatever it is doing. Main thread; everything changes at once
/// or at the awaits that are described here. Client, store and lock outlive its tasks.
class AccountSession final : public std::enable_shared_from_this<AccountSession> {
public:
    enum class State {
        active,
        /// Every request for a token fails with `invalidGrant`, without any traffic, until `adopt`.
        signedOut,
    };

    /// An access token with this little time left counts as expired.
    static constexpr std::chrono::seconds leeway{90};

    /// Reads nothing yet: the refresh token is asked for when it is needed.
    AccountSession(std::string profileId, const OAuthClient& oauth, SecretStore& secrets, RefreshLock& lock,
                   Clock now);

    AccountSession(const AccountSession&) = delete;
    AccountSession& operator=(const AccountSession&) = delete;

    const std::string& profileId() const { return profileId_; }
    State state() const { return state_; }

    /// The profile's lock, for who is about to have it signed in or out here while another process may be
    /// refreshing it. Null when it cannot be had in the time that a refresh takes, and on a stop.
    QCoro::Task<RefreshTokenKeeper::Lock> lock(std::stop_token stop)
    {
        return keeper_->lock(std::move(stop));
    }

    /// Takes over the tokens of a fresh sign-in: from the call on they serve, and nothing that was under way
    /// for older ones touches them. Fails when the refresh token could not be stored; it then serves for the
    /// rest of the run, unless another process has found it in the store all the same and goes on from it.
    QCoro::Task<std::expected<void, KeychainError>> adopt(TokenSet tokens);

    /// An access token with more than `leeway` left, after a refresh where that is needed. All callers share
    /// one refresh: `stop` ends the waiting of this one as `Stopped` and leaves the refresh to the others.
    /// `invalidGrant` and `invalidClient` once the sign-in is gone; any other failure has changed nothing.
    /// `Stopped` after `quit`.
    QCoro::Task<AuthResult<std::string>> validAccessToken(std::stop_token stop);

    /// The same, told that the service refused `rejected`: gives another token than that. No refresh where
    /// another caller has replaced it already.
    QCoro::Task<AuthResult<std::string>> replaceAccessToken(std::string rejected, std::stop_token stop);

    /// Forgets everything: signed out from the call on. A refresh that is under way goes on, and what it
    /// brings is dropped. False when the store could not be asked to remove the refresh token.
    QCoro::Task<bool> signOut();

    /// Signs out because the service turned `accessToken` away, unless a newer sign-in has taken the place of
    /// the one that the token belongs to. Where another process signed the profile in, this session forgets
    /// its tokens and goes on with what is stored. True when it is signed out now; false also when the lock
    /// could not be had, which changes nothing. Of the access tokens the last few are known.
    QCoro::Task<bool> signOutOf(std::string accessToken);

    /// Whether the store may still hold the refresh token of this sign-in, which is over.
    bool mayLinger() const { return mayLinger_; }

    /// Tries once more to have the store forget that token, and leaves alone what another process, or another
    /// session, has put in its place. False when it may still be there. Nothing while signed in.
    QCoro::Task<bool> forgetLingering();

    /// Tries once more to store a refresh token that the store has not taken. True when there is none
    /// afterwards.
    QCoro::Task<bool> saveUnsaved();

    /// From now on every request for a token fails as `Stopped`, and so does the refresh in flight, unless
    /// its refresh token is on the way to the server already: then it is waited for and stored.
    void quit();

    /// Ends when no refresh is in flight: before that, quitting could lose a token that was used up. After
    /// `quit` that takes no longer than the time-out of one request and a few calls of the store, each of
    /// which ends within seconds. What is unsaved then is lost unless `saveUnsaved` succeeds.
    QCoro::Task<void> settled();

private:
    /// What a refresh came to, and the sign-in that it is true of.
    struct Refreshed {
        AuthResult<std::string> token;
        std::uint64_t generation;
    };

    using Inflight = Completion<Refreshed>;
    using Self = std::shared_ptr<AccountSession>;

    static QCoro::Task<AuthResult<std::string>> currentOrRefreshed(Self self, std::stop_token stop);
    static QCoro::Task<AuthResult<std::string>> refresh(Self self, std::stop_token stop);
    static QCoro::Task<void> runRefresh(Self self, std::shared_ptr<Inflight> inflight);
    static QCoro::Task<Refreshed> performRefresh(Self self);
    static QCoro::Task<Refreshed> refreshUnderLock(Self self, std::uint64_t begun);
    static QCoro::Task<Refreshed> exchange(Self self, std::string refreshToken);
    static QCoro::Task<bool> isReplaced(Self self);
    static QCoro::Task<bool> signedOutOf(Self self, std::string accessToken);
    static QCoro::Task<void> allSettled(Self self);
    static QCoro::Task<bool> removed(Self self, QCoro::Task<bool> removing);
    static QCoro::Task<bool> forgotten(Self self);

    std::optional<std::string> currentToken() const;
    void use(std::string accessToken, std::optional<Date> expiresAt);
    void forgetAccessToken();
    void becomeSignedOut();
    bool isQuitting() const { return quitting_.stop_requested(); }
    Refreshed failed(AuthFailure why) const;
    AuthResult<std::string> asOfNow(const Refreshed& refreshed) const;

    std::string profileId_;
    const OAuthClient* oauth_;
    std::shared_ptr<RefreshTokenKeeper> keeper_;
    Clock now_;
    std::stop_source quitting_;

    State state_ = State::active;
    bool mayLinger_ = false;
    /// Raised whenever one sign-in ends or begins.
    std::uint64_t generation_ = 0;
    std::optional<std::string> accessToken_;
    std::optional<Date> accessExpiresAt_;
    /// The last access tokens of this sign-in, those that ran out or were refused among them.
    std::deque<std::string> recentTokens_;
    /// The one refresh in flight; cleared by the refresh itself and nobody else.
    std::shared_ptr<Inflight> inflight_;
};

} // namespace roost
