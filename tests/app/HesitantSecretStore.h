#pragma once

#include "service/Completion.h"
#include "service/SecretStore.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace roost::test {

/// Lets whoever comes through, unless it is shut.
class Gate {
public:
    void shut() { opened_.emplace(); }
    void open() { std::exchange(opened_, std::nullopt)->complete(true); }

    QCoro::Task<void> passed() const
    {
        if (const std::optional<Completion<bool>> opened = opened_) {
            auto waiting = opened->wait({});
            co_await waiting;
        }
    }

private:
    std::optional<Completion<bool>> opened_;
};

/// A secret store that may take its time to say who is signed in, and whose user may take it to open it.
class HesitantSecretStore final : public SecretStore {
public:
    explicit HesitantSecretStore(SecretStore& store) : store_{&store} {}

    Gate listing;
    Gate unlocking;

    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> get(std::string key) override
    {
        return store_->get(std::move(key));
    }
    QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string key) override
    {
        return store_->contains(std::move(key));
    }
    QCoro::Task<std::expected<void, KeychainError>> set(std::string value, std::string key) override
    {
        return store_->set(std::move(value), std::move(key));
    }
    QCoro::Task<bool> remove(std::string key) override { return store_->remove(std::move(key)); }
    QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>> keys(std::string prefix) override
    {
        auto passing = listing.passed();
        co_await passing;
        auto asking = store_->keys(std::move(prefix));
        co_return co_await asking;
    }
    QCoro::Task<bool> unlock() override
    {
        auto passing = unlocking.passed();
        co_await passing;
        auto opening = store_->unlock();
        co_return co_await opening;
    }

private:
    SecretStore* store_;
};

} // namespace roost::test
