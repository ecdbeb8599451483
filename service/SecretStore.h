#pragma once

#include <QCoro/QCoroTask>

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace roost {

/// A value could not be stored.
struct KeychainError {
    /// -25308: the store is locked or may not ask the user. -25291: there is no store to speak to. -25299 and
    /// others: the store refused.
    std::int32_t status = 0;

    bool operator==(const KeychainError&) const = default;
};

/// The store cannot say at the moment what it holds: locked, not yet unlocked since login, absent, or not
/// answering. Never to be taken for "there is no such item".
struct SecretsUnavailable {
    enum class Why { locked, noService, notAnswering };

    Why why = Why::noService;

    bool operator==(const SecretsUnavailable&) const = default;
};

/// Keeps the few values that must survive restarts and must not lie in plain files. A map of texts (UTF-8) by
/// key: keys and values are stored byte for byte. Shared by everybody who keeps secrets; called on the main
/// thread, whose event loop goes on during each call. Calls may run at once; those for one key take effect in
/// the order in which they were made. Never asks the user anything.
class SecretStore {
public:
    virtual ~SecretStore() = default;

    /// The value of `key`; nothing when the store answers that there is none, or that it is not UTF-8.
    virtual QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>>
    get(std::string key) = 0;

    virtual QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string key) = 0;

    /// Stores `value`, in place of what was there, in one step: on failure the old value stays.
    virtual QCoro::Task<std::expected<void, KeychainError>> set(std::string value, std::string key) = 0;

    /// Removes the item of `key`, where there is one. False when the store could not be asked, so that the
    /// item may still be there.
    virtual QCoro::Task<bool> remove(std::string key) = 0;

    /// The keys that begin with `prefix`, each once, ascending by their bytes.
    virtual QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
    keys(std::string prefix) = 0;
};

} // namespace roost
