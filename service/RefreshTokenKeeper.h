#pragma once

#include "service/Completion.h"
#include "service/RefreshLock.h"
#include "service/SecretStore.h"

#include <QCoro/QCoroTask>

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>

namespace roost {

/// Stands before the profile's id in the key of its refresh token; who has such a key is signed in.
inline constexpr std::string_view refreshTokenPrefix = "refresh-token|";

/// The newest refresh token of one profile: in the secret store, or here as long as that has not taken it.
/// Belongs to one `AccountSession`.
///
/// What lies in the store while a newer token is unsaved may be used up already, and the unsaved one may lie
/// there without this session knowing. So the profile's lock is kept for as long as there is an unsaved token
/// that was got or chosen under it: no other process sends anything meanwhile.
///
/// Held by `std::shared_ptr`, and kept alive by its tasks. Main thread; store and lock outlive its tasks.
class RefreshTokenKeeper final : public std::enable_shared_from_this<RefreshTokenKeeper> {
public:
    /// The lock of the profile, held until the last one lets go of it.
    using Lock = std::shared_ptr<RefreshLock::Held>;

    RefreshTokenKeeper(const std::string& profileId, SecretStore& secrets, RefreshLock& lock);

    RefreshTokenKeeper(const RefreshTokenKeeper&) = delete;
    RefreshTokenKeeper& operator=(const RefreshTokenKeeper&) = delete;

    /// The lock that is held here already, or else the one that the profile gives. Null when it was stopped
    /// or could not be had. Those who ask at the same time share one attempt, which the first one's `stop`
    /// ends.
    QCoro::Task<Lock> lock(std::stop_token stop);

    /// The token to send next; nothing when there is none. The caller holds the lock.
    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> newest();

    /// Keeps `token` as the newest one from the call on. Asks the store before it returns, so that the store
    /// hears of signing in and out in the order in which they happen.
    QCoro::Task<std::expected<void, KeychainError>> save(std::string token);

    /// Tries once more to store what is unsaved. True when nothing is afterwards.
    QCoro::Task<bool> saveUnsaved(std::stop_token stop);

    /// Whether the store holds a token that another process put there since this session last stored or read
    /// one. False while it cannot be told. The caller holds the lock.
    QCoro::Task<bool> isReplaced();

    /// Leaves the profile to what is stored.
    void dropUnsaved();

    /// Forgets the token, here from the call on. False when the store could not be asked.
    QCoro::Task<bool> remove();

    /// Has the store forget a token that this session gave it or found there, and leaves any other alone: it
    /// is of a newer sign-in. False when the store could not be asked. The caller holds the lock.
    QCoro::Task<bool> removeOwn();

private:
    using Self = std::shared_ptr<RefreshTokenKeeper>;
    using Acquiring = Completion<Lock>;

    struct Unsaved {
        std::string token;
        /// Held at least since the store was first given the token, or since nobody can have found it there.
        Lock lock;
        /// Whether another process may have found it in the store, and used it up.
        bool mayBeTaken;
        /// Of the attempt to store it whose end counts.
        std::uint64_t attempt;
    };

    static QCoro::Task<Lock> locked(Self self, std::stop_token stop);
    static QCoro::Task<void> acquire(Self self, std::shared_ptr<Acquiring> acquiring, std::stop_token stop);
    static QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> chosen(Self self);
    static QCoro::Task<std::expected<void, KeychainError>>
    saved(Self self, std::uint64_t attempt, QCoro::Task<std::expected<void, KeychainError>> saving);
    static QCoro::Task<bool> savedAgain(Self self, std::stop_token stop);
    static QCoro::Task<bool> replaced(Self self);
    static QCoro::Task<bool> removed(Lock lock, QCoro::Task<bool> removing);
    static QCoro::Task<bool> removedOwn(Self self);

    std::optional<std::string> unsavedOrStored(std::optional<std::string> stored);

    std::string profileId_;
    std::string key_;
    SecretStore* secrets_;
    RefreshLock* profileLock_;

    std::weak_ptr<RefreshLock::Held> held_;
    std::shared_ptr<Acquiring> acquiring_;
    std::optional<Unsaved> unsavedRefreshToken_;
    /// What the store may hold that this session gave it or found there.
    std::set<std::string> own_;
    /// Raised whenever something else becomes the newest token here.
    std::uint64_t changes_ = 0;
};

} // namespace roost
