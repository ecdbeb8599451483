#include "service/ClientIDStore.h"

namespace roost {

namespace {

std::string keyFor(const WebURL& issuer) { return "client-id|" + issuer.text(); }

} // namespace

QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> ClientIDStore::find(WebURL issuer)
{
    const std::string key = keyFor(issuer);
    if (const auto unstored = unstored_.find(key); unstored != unstored_.end()) {
        // A copy: QCoro moves from what it is given to return, whatever that belongs to.
        co_return std::string{unstored->second};
    }
    auto asking = secrets_->get(key);
    auto stored = co_await asking;
    if (const auto found = found_.find(key); !stored && found != found_.end()) {
        co_return std::string{found->second};
    }
    if (stored && stored->value_or("").empty()) {
        co_return std::nullopt;
    }
    if (stored) {
        found_[key] = **stored;
    }
    co_return stored;
}

QCoro::Task<void> ClientIDStore::keep(WebURL issuer, std::string id)
{
    const std::string key = keyFor(issuer);
    // Known from here on, so that nobody registers while it is being stored.
    unstored_[key] = id;
    auto storing = storeAgain();
    static_cast<void>(co_await storing);
}

QCoro::Task<bool> ClientIDStore::storeAgain()
{
    const auto missing = unstored_;
    for (const auto& [key, id] : missing) {
        auto storing = secrets_->set(id, key);
        const auto stored = co_await storing;
        // Another one may have come, or this one been forgotten, meanwhile.
        if (const auto kept = unstored_.find(key); stored && kept != unstored_.end() && kept->second == id) {
            found_.insert_or_assign(key, id);
            unstored_.erase(kept);
        }
    }
    co_return unstored_.empty();
}

QCoro::Task<void> ClientIDStore::forget(WebURL issuer)
{
    const std::string key = keyFor(issuer);
    unstored_.erase(key);
    found_.erase(key);
    auto removing = secrets_->remove(key);
    static_cast<void>(co_await removing);
}

} // namespace roost
