#pragma once

#include "service/SecretStore.h"

#include <chrono>
#include <memory>
#include <string>

namespace roost {

class KeyringThread;

/// The `SecretStore` on the user's keyring: the Secret Service of the session bus, by libsecret. Needs no
/// particular event loop. One item per key, in the default collection, with the attributes `service` and
/// "account", the key. A key or value that D-Bus cannot carry (no UTF-8, a zero byte in a key) is never
/// stored and so never found. Main thread; its tasks may outlive it and end as not answered.
class KeychainSecretStore final : public SecretStore {
public:
    /// How long a task waits. A healthy keyring answers in milliseconds; the first call after login may have
    /// to start it.
    struct Patience {
        std::chrono::milliseconds service{5000};
        /// For the user who is asked. The question stays on the screen when it has passed.
        std::chrono::milliseconds user{120000};
    };

    /// Connects to nothing yet.
    KeychainSecretStore(std::string service, Patience patience);

    /// Waits for nobody: what is under way ends as not answered.
    ~KeychainSecretStore() override;
    KeychainSecretStore(const KeychainSecretStore&) = delete;
    KeychainSecretStore& operator=(const KeychainSecretStore&) = delete;

    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> get(std::string key) override;
    QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string key) override;
    QCoro::Task<std::expected<void, KeychainError>> set(std::string value, std::string key) override;
    QCoro::Task<bool> remove(std::string key) override;
    QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
    keys(std::string prefix) override;
    QCoro::Task<bool> unlock() override;

private:
    struct Questions;

    std::string service_;
    std::shared_ptr<Questions> questions_;
    std::unique_ptr<KeyringThread> thread_;
    /// Another thread, so that the keyring is read while the user thinks.
    std::unique_ptr<KeyringThread> askingThread_;
};

} // namespace roost
