#pragma once

#include "service/SecretStore.h"
#include "tests/support/ShuffledTurns.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace roost::test {

/// A `SecretStore` in memory that suspends twice in every call: before it takes effect and before the caller
/// hears of it. The calls for one key take effect in their order, whatever the turns.
class ScriptedSecretStore final : public SecretStore {
public:
    explicit ScriptedSecretStore(ShuffledTurns& turns) : turns_(&turns) {}

    /// These count for every call that takes effect from now on.
    bool failWrites = false;
    /// Nobody hears whether a value was stored; it is, or not.
    bool loseAnswersToWrites = false;
    std::optional<SecretsUnavailable> unavailable;

    std::map<std::string, std::string> items;
    /// The keys whose last `remove` failed, so that their items may still be there.
    std::set<std::string> notRemoved;
    /// "get", "set" … of each call, when it was made.
    std::vector<std::string> calls;
    /// The values of each `set` whose caller has heard of its end, good or bad.
    std::vector<std::string> answeredSets;

    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> get(std::string key) override;
    QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string key) override;
    QCoro::Task<std::expected<void, KeychainError>> set(std::string value, std::string key) override;
    QCoro::Task<bool> remove(std::string key) override;
    QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
    keys(std::string prefix) override;
    /// What `unavailable` was stays: nobody is there to answer.
    QCoro::Task<bool> unlock() override;

private:
    struct Call {
        std::function<void()> effect;
        bool isDone = false;
    };

    QCoro::Task<void> inOrder(std::string key, std::function<void()> effect);

    ShuffledTurns* turns_;
    std::map<std::string, std::deque<std::shared_ptr<Call>>> waiting_;
};

} // namespace roost::test
