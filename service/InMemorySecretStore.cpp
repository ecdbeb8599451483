#include "service/InMemorySecretStore.h"

namespace roost {

namespace {

std::int32_t statusFor(SecretsUnavailable::Why why)
{
    switch (why) {
    case SecretsUnavailable::Why::locked:
        return KeychainError::interactionNotAllowed;
    case SecretsUnavailable::Why::noService:
        return KeychainError::notAvailable;
    case SecretsUnavailable::Why::notAnswering:
        break;
    }
    return KeychainError::serviceNotAvailable;
}

} // namespace

QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>>
InMemorySecretStore::get(std::string key)
{
    const std::scoped_lock held(lock);
    if (unavailable) {
        co_return std::unexpected(*unavailable);
    }
    const auto found = values.find(key);
    std::optional<std::string> value;
    if (found != values.end()) {
        value = found->second;
    }
    co_return value;
}

QCoro::Task<std::expected<bool, SecretsUnavailable>> InMemorySecretStore::contains(std::string key)
{
    const std::scoped_lock held(lock);
    if (unavailable) {
        co_return std::unexpected(*unavailable);
    }
    co_return values.contains(key);
}

QCoro::Task<std::expected<void, KeychainError>> InMemorySecretStore::set(std::string value, std::string key)
{
    const std::scoped_lock held(lock);
    if (unavailable) {
        co_return std::unexpected(KeychainError{statusFor(unavailable->why)});
    }
    if (failWrites) {
        co_return std::unexpected(KeychainError{KeychainError::interactionNotAllowed});
    }
    values.insert_or_assign(std::move(key), std::move(value));
    co_return {};
}

QCoro::Task<bool> InMemorySecretStore::remove(std::string key)
{
    const std::scoped_lock held(lock);
    if (!unavailable) {
        values.erase(key);
    }
    co_return !unavailable;
}

QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
InMemorySecretStore::keys(std::string prefix)
{
    const std::scoped_lock held(lock);
    if (unavailable) {
        co_return std::unexpected(*unavailable);
    }
    std::vector<std::string> found;
    for (auto at = values.lower_bound(prefix); at != values.end() && at->first.starts_with(prefix); ++at) {
        found.push_back(at->first);
    }
    co_return found;
}

QCoro::Task<bool> InMemorySecretStore::unlock()
{
    const std::scoped_lock held(lock);
    if (unavailable && unavailable->why == SecretsUnavailable::Why::locked) {
        unavailable.reset();
    }
    co_return !unavailable;
}

} // namespace roost
