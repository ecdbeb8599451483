#pragma once

#include "service/SecretStore.h"

#include <map>
#include <mutex>

namespace roost {

/// A `SecretStore` without a keychain: for simulations, and to try what a store that fails does to the rest.
/// Every task has ended when it is returned. Any thread.
class InMemorySecretStore final : public SecretStore {
public:
    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> get(std::string key) override;
    QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string key) override;
    QCoro::Task<std::expected<void, KeychainError>> set(std::string value, std::string key) override;
    QCoro::Task<bool> remove(std::string key) override;
    QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
    keys(std::string prefix) override;

    /// The user who is asked opens a locked store. One that is unavailable for another reason stays so.
    QCoro::Task<bool> unlock() override;

    /// Held by every operation for its whole duration, and by whoever touches the members below while
    /// operations run on other threads.
    std::mutex lock;
    std::map<std::string, std::string> values;
    /// `set` fails with `interactionNotAllowed` and changes nothing.
    bool failWrites = false;
    /// While it has a value, every operation fails for that reason and changes nothing.
    std::optional<SecretsUnavailable> unavailable;
};

} // namespace roost
