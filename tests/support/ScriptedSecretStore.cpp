#include "tests/support/ScriptedSecretStore.h"

#include <utility>

namespace roost::test {

namespace {

constexpr KeychainError refused{KeychainError::internalComponent};
constexpr KeychainError notAnswered{KeychainError::serviceNotAvailable};
constexpr KeychainError locked{KeychainError::interactionNotAllowed};

} // namespace

QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>>
ScriptedSecretStore::get(std::string key)
{
    calls.emplace_back("get");
    std::expected<std::optional<std::string>, SecretsUnavailable> result;
    auto asking = inOrder(key, [&] {
        if (unavailable) {
            result = std::unexpected(*unavailable);
        } else if (const auto found = items.find(key); found != items.end()) {
            result = found->second;
        }
    });
    co_await asking;
    co_return result;
}

QCoro::Task<std::expected<bool, SecretsUnavailable>> ScriptedSecretStore::contains(std::string key)
{
    auto asking = get(std::move(key));
    const auto found = co_await asking;
    if (!found) {
        co_return std::unexpected(found.error());
    }
    co_return found->has_value();
}

QCoro::Task<std::expected<void, KeychainError>> ScriptedSecretStore::set(std::string value, std::string key)
{
    calls.emplace_back("set");
    std::expected<void, KeychainError> result;
    auto asking = inOrder(key, [&] {
        if (unavailable || failWrites) {
            result = std::unexpected(unavailable ? locked : refused);
        } else {
            if (!loseAnswersToWrites || turns_->below(2) == 0) {
                items[key] = value;
            }
            if (loseAnswersToWrites) {
                result = std::unexpected(notAnswered);
            }
        }
    });
    co_await asking;
    answeredSets.push_back(value);
    co_return result;
}

QCoro::Task<bool> ScriptedSecretStore::remove(std::string key)
{
    calls.emplace_back("remove");
    bool result = true;
    auto asking = inOrder(key, [&] {
        if (unavailable) {
            result = false;
            notRemoved.insert(key);
        } else {
            items.erase(key);
            notRemoved.erase(key);
        }
    });
    co_await asking;
    co_return result;
}

QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
ScriptedSecretStore::keys(std::string prefix)
{
    calls.emplace_back("keys");
    const ShuffledTurns::Turn turn = turns_->turn();
    co_await turn;
    if (unavailable) {
        co_return std::unexpected(*unavailable);
    }
    std::vector<std::string> found;
    for (const auto& [key, value] : items) {
        if (key.starts_with(prefix)) {
            found.push_back(key);
        }
    }
    co_return found;
}

QCoro::Task<bool> ScriptedSecretStore::unlock()
{
    const ShuffledTurns::Turn turn = turns_->turn();
    co_await turn;
    co_return !unavailable;
}

QCoro::Task<void> ScriptedSecretStore::inOrder(std::string key, std::function<void()> effect)
{
    const auto call = std::make_shared<Call>(std::move(effect));
    waiting_[key].push_back(call);
    const ShuffledTurns::Turn turn = turns_->turn();
    co_await turn;
    while (!call->isDone) {
        auto& queue = waiting_[key];
        const std::shared_ptr<Call> first = queue.front();
        queue.pop_front();
        first->effect();
        first->isDone = true;
    }
    const ShuffledTurns::Turn answer = turns_->turn();
    co_await answer;
}

} // namespace roost::test
