#include "service/RefreshTokenKeeper.h"

#include <utility>

namespace roost {

RefreshTokenKeeper::RefreshTokenKeeper(const std::string& profileId, SecretStore& secrets, RefreshLock& lock)
    : profileId_(profileId),
      key_(std::string{refreshTokenPrefix} + profileId),
      secrets_(&secrets),
      profileLock_(&lock)
{
}

QCoro::Task<RefreshTokenKeeper::Lock> RefreshTokenKeeper::lock(std::stop_token stop)
{
    return locked(shared_from_this(), std::move(stop));
}

QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> RefreshTokenKeeper::newest()
{
    return chosen(shared_from_this());
}

QCoro::Task<std::expected<void, KeychainError>> RefreshTokenKeeper::save(std::string token)
{
    Lock lock = held_.lock();
    const bool isLocked = lock != nullptr;
    const std::uint64_t attempt = ++changes_;
    own_.insert(token);
    unsavedRefreshToken_ =
        Unsaved{.token = token, .lock = std::move(lock), .mayBeTaken = !isLocked, .attempt = attempt};
    auto saving = secrets_->set(std::move(token), key_);
    return saved(shared_from_this(), attempt, std::move(saving));
}

QCoro::Task<bool> RefreshTokenKeeper::saveUnsaved(std::stop_token stop)
{
    return savedAgain(shared_from_this(), std::move(stop));
}

QCoro::Task<bool> RefreshTokenKeeper::isReplaced() { return replaced(shared_from_this()); }

void RefreshTokenKeeper::dropUnsaved()
{
    ++changes_;
    unsavedRefreshToken_.reset();
}

QCoro::Task<bool> RefreshTokenKeeper::remove()
{
    // Until it is removed, what lies there may be used up.
    Lock lock = held_.lock();
    dropUnsaved();
    QCoro::Task<bool> removing = secrets_->remove(key_);
    return removed(std::move(lock), std::move(removing));
}

QCoro::Task<bool> RefreshTokenKeeper::removeOwn() { return removedOwn(shared_from_this()); }

QCoro::Task<RefreshTokenKeeper::Lock> RefreshTokenKeeper::locked(Self self, std::stop_token stop)
{
    Lock held = self->held_.lock();
    if (held) {
        co_return held;
    }
    std::shared_ptr<Acquiring> acquiring = self->acquiring_;
    if (!acquiring) {
        acquiring = std::make_shared<Acquiring>();
        self->acquiring_ = acquiring;
        acquire(self, acquiring, stop);
    }
    QCoro::Task<std::optional<Lock>> waiting = acquiring->wait(std::move(stop));
    std::optional<Lock> acquired = co_await waiting;
    co_return std::move(acquired).value_or(nullptr);
}

QCoro::Task<void> RefreshTokenKeeper::acquire(Self self, std::shared_ptr<Acquiring> acquiring,
                                              std::stop_token stop)
{
    auto locking = self->profileLock_->acquire(self->profileId_, std::move(stop));
    Lock lock = co_await locking;
    self->held_ = lock;
    self->acquiring_.reset();
    acquiring->complete(std::move(lock));
}

QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>>
RefreshTokenKeeper::chosen(Self self)
{
    while (true) {
        std::optional<Unsaved>& unsaved = self->unsavedRefreshToken_;
        if (unsaved && !unsaved->mayBeTaken) {
            unsaved->lock = self->held_.lock();
            co_return std::string{unsaved->token};
        }
        const std::uint64_t changes = self->changes_;
        auto reading = self->secrets_->get(self->key_);
        std::expected<std::optional<std::string>, SecretsUnavailable> stored = co_await reading;
        if (changes != self->changes_) {
            continue;
        }
        if (stored) {
            stored = self->unsavedOrStored(*std::move(stored));
        }
        co_return stored;
    }
}

/// The newer one of the two, now that the lock keeps others from changing what is stored.
std::optional<std::string> RefreshTokenKeeper::unsavedOrStored(std::optional<std::string> stored)
{
    if (unsavedRefreshToken_ && (!stored || own_.contains(*stored))) {
        unsavedRefreshToken_->lock = held_.lock();
        unsavedRefreshToken_->mayBeTaken = false;
        return unsavedRefreshToken_->token;
    }
    // Another process may have found the unsaved one and gone on from it.
    unsavedRefreshToken_.reset();
    own_.clear();
    if (stored) {
        own_.insert(*stored);
    }
    return stored;
}

QCoro::Task<std::expected<void, KeychainError>>
RefreshTokenKeeper::saved(Self self, std::uint64_t attempt,
                          QCoro::Task<std::expected<void, KeychainError>> saving)
{
    std::expected<void, KeychainError> result = co_await saving;
    std::optional<Unsaved>& unsaved = self->unsavedRefreshToken_;
    if (!unsaved || unsaved->attempt != attempt) {
        co_return result;
    }
    if (result) {
        self->own_ = {unsaved->token};
        unsaved.reset();
    } else if (result.error().status != KeychainError::serviceNotAvailable) {
        unsaved->mayBeTaken = false;
    }
    co_return result;
}

QCoro::Task<bool> RefreshTokenKeeper::savedAgain(Self self, std::stop_token stop)
{
    if (!self->unsavedRefreshToken_) {
        co_return true;
    }
    QCoro::Task<Lock> locking = locked(self, std::move(stop));
    const Lock lock = co_await locking;
    if (lock) {
        auto choosing = chosen(self);
        static_cast<void>(co_await choosing);
    }
    const std::optional<Unsaved>& unsaved = self->unsavedRefreshToken_;
    if (lock && unsaved && !unsaved->mayBeTaken) {
        auto saving = self->save(unsaved->token);
        static_cast<void>(co_await saving);
    }
    co_return !self->unsavedRefreshToken_;
}

QCoro::Task<bool> RefreshTokenKeeper::replaced(Self self)
{
    const std::uint64_t changes = self->changes_;
    auto reading = self->secrets_->get(self->key_);
    const std::expected<std::optional<std::string>, SecretsUnavailable> stored = co_await reading;
    const bool isOthers =
        changes == self->changes_ && stored && stored->has_value() && !self->own_.contains(**stored);
    co_return isOthers;
}

QCoro::Task<bool> RefreshTokenKeeper::removed(Lock lock, QCoro::Task<bool> removing)
{
    const Lock held = std::move(lock);
    const bool isRemoved = co_await removing;
    co_return isRemoved;
}

QCoro::Task<bool> RefreshTokenKeeper::removedOwn(Self self)
{
    const std::uint64_t changes = self->changes_;
    auto reading = self->secrets_->get(self->key_);
    const std::expected<std::optional<std::string>, SecretsUnavailable> stored = co_await reading;
    if (!stored) {
        co_return false;
    }
    if (changes != self->changes_ || !*stored || !self->own_.contains(**stored)) {
        co_return true;
    }
    auto removing = self->remove();
    const bool isRemoved = co_await removing;
    co_return isRemoved;
}

} // namespace roost
