#pragma once

#include "service/InMemorySecretStore.h"
#include "tests/app/AppSimulationDice.h"
#include "tests/support/VirtualTime.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace roost::test {

/// A keyring that takes its time, and troubles. The calls for one key take effect in their order.
class SimulatedKeyring final : public SecretStore {
public:
    enum class Mood { well, locked, notAnswering, refusingWrites };

    SimulatedKeyring(VirtualTime& time, Dice& dice) : time_{&time}, dice_{&dice} {}

    Mood mood = Mood::well;
    /// The program that asks is dead: nothing that it still asks takes effect.
    bool isFrozen = false;
    std::map<std::string, std::string>& items() { return behind_.values; }
    /// Called with each key that was looked for and is not there.
    std::function<void(const std::string&)> onMissing = [](const std::string&) {};
    /// Called with the keys that were found when all were asked for.
    std::function<void(const std::vector<std::string>&)> onListed = [](const std::vector<std::string>&) {};
    /// Called when the keyring did not do what it was asked for.
    std::function<void()> onTrouble = [] {};

    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> get(std::string key) override;
    QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string key) override;
    QCoro::Task<std::expected<void, KeychainError>> set(std::string value, std::string key) override;
    QCoro::Task<bool> remove(std::string key) override;
    QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
    keys(std::string prefix) override;
    QCoro::Task<bool> unlock() override;
    /// How often the user is being asked to open it.
    std::size_t questions() const { return questions_; }

private:
    QCoro::Task<void> turnOf(std::string key);
    QCoro::Task<void> answer();
    /// Has `behind_` be as this is.
    void agree();

    VirtualTime* time_;
    Dice* dice_;
    InMemorySecretStore behind_;
    std::size_t questions_ = 0;
    /// When the last call for each key takes effect.
    std::map<std::string, std::chrono::milliseconds> turns_;
};

} // namespace roost::test
