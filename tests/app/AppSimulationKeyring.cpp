#include "tests/app/AppSimulationKeyring.h"

#include <algorithm>

namespace roost::test {

using namespace std::chrono_literals;

QCoro::Task<void> SimulatedKeyring::turnOf(std::string key)
{
    const std::chrono::milliseconds now = time_->bootTime()();
    const std::chrono::milliseconds slow = mood == Mood::notAnswering ? 5000ms : 30ms;
    std::chrono::milliseconds& turn = turns_[key];
    turn = std::max(turn, now + dice_->between(0ms, slow));
    auto waiting = time_->pause()(turn - now, {});
    co_await waiting;
    agree();
}

QCoro::Task<void> SimulatedKeyring::answer()
{
    auto coming = time_->pause()(dice_->between(0ms, 20ms), {});
    co_await coming;
}

void SimulatedKeyring::agree()
{
    using Why = SecretsUnavailable::Why;
    behind_.failWrites = mood == Mood::refusingWrites;
    behind_.unavailable.reset();
    if (isFrozen || mood == Mood::notAnswering) {
        behind_.unavailable = SecretsUnavailable{Why::notAnswering};
    } else if (mood == Mood::locked) {
        behind_.unavailable = SecretsUnavailable{Why::locked};
    }
    if (mood != Mood::well) {
        onTrouble();
    }
}

QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>>
SimulatedKeyring::get(std::string key)
{
    auto waiting = turnOf(key);
    co_await waiting;
    auto getting = behind_.get(key);
    const auto value = co_await getting;
    if (value && !*value) {
        onMissing(key);
    }
    auto answering = answer();
    co_await answering;
    co_return value;
}

QCoro::Task<std::expected<bool, SecretsUnavailable>> SimulatedKeyring::contains(std::string key)
{
    auto waiting = turnOf(key);
    co_await waiting;
    auto looking = behind_.contains(key);
    const auto found = co_await looking;
    co_return found;
}

QCoro::Task<std::expected<void, KeychainError>> SimulatedKeyring::set(std::string value, std::string key)
{
    auto waiting = turnOf(key);
    co_await waiting;
    // Whether it is stored, nobody hears.
    if (!isFrozen && mood == Mood::notAnswering && dice_->isOneIn(2)) {
        behind_.values[key] = value;
    }
    auto setting = behind_.set(std::move(value), key);
    const auto stored = co_await setting;
    auto answering = answer();
    co_await answering;
    co_return stored;
}

QCoro::Task<bool> SimulatedKeyring::remove(std::string key)
{
    auto waiting = turnOf(key);
    co_await waiting;
    auto removing = behind_.remove(key);
    const bool isRemoved = co_await removing;
    auto answering = answer();
    co_await answering;
    co_return isRemoved;
}

QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
SimulatedKeyring::keys(std::string prefix)
{
    // Of all keys: it waits for nobody.
    auto waiting = turnOf("");
    co_await waiting;
    auto listing = behind_.keys(std::move(prefix));
    const auto found = co_await listing;
    if (found) {
        onListed(*found);
    }
    auto answering = answer();
    co_await answering;
    co_return found;
}

QCoro::Task<bool> SimulatedKeyring::unlock()
{
    ++questions_;
    auto asking = time_->pause()(dice_->between(1s, 30s), {});
    co_await asking;
    --questions_;
    if (!isFrozen && mood == Mood::locked && dice_->isOneIn(2)) {
        mood = Mood::well;
    }
    co_return mood == Mood::well;
}

} // namespace roost::test
