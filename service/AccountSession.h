#pragma once

#include "model/Clock.h"
#include "service/AuthFailure.h"
#include "service/Completion.h"
#include "service/OAuthClient.h"
#include "service/RefreshLock.h"
#include "service/SecretStore.h"
#include "service/TokenSet.h"

#include <QCoro/QCoroTask>

#include <chrono>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace roost {

/// The tokens of one signed-in profile while the program runs: hands out access tokens, refreshes them when
/// they run out or were refused, and keeps the refresh token, which changes with every refresh, in the secret
/// store. Access tokens live in memory only.
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

    /// Takes over the tokens of a fresh sign-in: from the call on they serve, and nothing that was under way
    /// for older ones touches them. Fails when the refresh token could not be stored; it then serves for the
    /// rest of the run.
    QCoro::Task<std::expected<void, KeychainError>> adopt(TokenSet tokens);

    /// An access token with more than `leeway` left, after a refresh where that is needed. All callers share
    /// one refresh: `stop` ends the waiting of this one as `Stopped` and leaves the refresh to the others.
    /// `invalidGrant` and `invalidClient` once the sign-in is gone; any other failure has changed nothing.
    QCoro::Task<AuthResult<std::string>> validAccessToken(std::stop_token stop);

    /// The same, told that the service refused `rejected`: gives another token than that. No refresh where
    /// another caller has replaced it already.
    QCoro::Task<AuthResult<std::string>> replaceAccessToken(std::string rejected, std::stop_token stop);

    /// Forgets everything: signed out from the call on. A refresh that is under way goes on, and what it
    /// brings is dropped. False when the store could not be asked to remove the refresh token.
    QCoro::Task<bool> signOut();

    /// Ends when no refresh is in flight: before that, quitting could lose a token that was used up.
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
    static QCoro::Task<std::expected<void, KeychainError>>
    saved(Self self, std::string refreshToken, std::uint64_t generation,
          QCoro::Task<std::expected<void, KeychainError>> saving);
    static QCoro::Task<void> allSettled(Self self);

    std::optional<std::string> currentToken() const;
    QCoro::Task<std::expected<void, KeychainError>> save(std::string refreshToken);
    void becomeSignedOut();
    Refreshed failed(AuthFailure why) const;
    AuthResult<std::string> asOfNow(const Refreshed& refreshed) const;

    std::string profileId_;
    std::string key_;
    const OAuthClient* oauth_;
    SecretStore* secrets_;
    RefreshLock* lock_;
    Clock now_;

    State state_ = State::active;
    /// Raised whenever one sign-in ends or begins.
    std::uint64_t generation_ = 0;
    std::optional<std::string> accessToken_;
    std::optional<Date> accessExpiresAt_;
    /// The newest refresh token as long as the store is not known to have it; goes before the stored one.
    std::optional<std::string> unsavedRefreshToken_;
    /// The one refresh in flight; cleared by the refresh itself and nobody else.
    std::shared_ptr<Inflight> inflight_;
};

} // namespace roost
