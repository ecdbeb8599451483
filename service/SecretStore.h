#pragma once

#include <QCoro/QCoroTask>

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace roost {

/// A value could not be stored. The status is one of the numbers of the platform whose keychain gave the
/// error its name.
struct KeychainError {
    /// The store is locked and may not ask the user.
    static constexpr std::int32_t interactionNotAllowed = -25308;
    /// The store is there but holds nothing to put values in; `unlock` lets the user make one.
    static constexpr std::int32_t noDefaultKeychain = -25307;
    /// There is no store to speak to.
    static constexpr std::int32_t notAvailable = -25291;
    /// The store did not answer in time, or left in the middle: the value may be stored all the same.
    static constexpr std::int32_t serviceNotAvailable = -67585;
    /// The key or the value is a text that the store cannot hold.
    static constexpr std::int32_t parameter = -50;
    /// The store refused.
    static constexpr std::int32_t internalComponent = -2070;

    std::int32_t status = 0;

    bool operator==(const KeychainError&) const = default;
};

/// The store cannot say at the moment what it holds: locked, not yet unlocked since login, absent, or not
/// answering. Never to be taken for "there is no such item".
struct SecretsUnavailable {
    enum class Why {
        /// It can be opened, by the user alone.
        locked,
        /// No program on this machine keeps secrets, or the one that would has nothing to keep them in.
        noService,
        /// It is there and does not answer in time, or not to the point.
        notAnswering,
    };

    Why why = Why::noService;

    bool operator==(const SecretsUnavailable&) const = default;
};

/// Keeps the few values that must survive restarts and must not lie in plain files. A map of texts (UTF-8) by
/// key: keys and values are stored byte for byte. Shared by everybody who keeps secrets; called on the main
/// thread, whose event loop goes on during each call. Calls may run at once; those for one key take effect in
/// the order in which they were made, and every one of them but `unlock` ends within seconds, whatever the
/// store does. Only `unlock` asks the user anything. Outlives its tasks.
class SecretStore {
public:
    virtual ~SecretStore() = default;

    /// The value of `key`; nothing when the store answers that there is none, or that it is not UTF-8.
    virtual QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>>
    get(std::string key) = 0;

    virtual QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string key) = 0;

    /// Stores `value`, in place of what was there, in one step: on failure the old value stays. Only with
    /// `serviceNotAvailable` may it be the new one, since what was asked for cannot be taken back.
    virtual QCoro::Task<std::expected<void, KeychainError>> set(std::string value, std::string key) = 0;

    /// Removes the item of `key`, where there is one. False when the store could not be asked, so that the
    /// item may still be there.
    virtual QCoro::Task<bool> remove(std::string key) = 0;

    /// The keys that begin with `prefix`, each once, ascending by their bytes.
    virtual QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
    keys(std::string prefix) = 0;

    /// Asks the user to open the store, or to make one where there is none yet, and waits for the answer,
    /// minutes if need be. True when the store is open. Called for a click of the user and at no other time;
    /// while one question is on the screen, further calls wait for the same answer.
    virtual QCoro::Task<bool> unlock() = 0;
};

} // namespace roost
