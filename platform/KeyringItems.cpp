#include "platform/KeyringItems.h"

#include <algorithm>
#include <set>

namespace roost::KeyringItems {

namespace {

KeyringResult<std::string> openDefault(KeyringSession& session, GCancellable* stop)
{
    KeyringResult<std::string> collection = session.defaultCollection(stop);
    if (!collection) {
        return collection;
    }
    if (const KeyringResult<void> open = session.ensureOpen(*collection, stop); !open) {
        return std::unexpected(open.error());
    }
    return collection;
}

/// So often is looked for items before a collection that closes each time counts as locked.
constexpr int mostLooks = 3;

struct Found {
    std::string collection;
    KeyringSession::Items items;
};

KeyringResult<Found> find(KeyringSession& session, const KeyringSession::Attributes& attributes,
                          GCancellable* stop)
{
    for (int look = 0; look < mostLooks; ++look) {
        KeyringResult<std::string> collection = openDefault(session, stop);
        if (!collection) {
            return std::unexpected(collection.error());
        }
        KeyringResult<KeyringSession::Items> items = session.search(attributes, stop);
        if (!items) {
            return std::unexpected(items.error());
        }
        // A collection that was locked meanwhile may not have told what it holds.
        const KeyringResult<bool> isStillOpen = session.isOpen(*collection, stop);
        if (!isStillOpen) {
            return std::unexpected(isStillOpen.error());
        }
        if (*isStillOpen) {
            return Found{*std::move(collection), *std::move(items)};
        }
    }
    return std::unexpected(KeyringFailure::locked);
}

/// The item that counts: one in the collection before any other.
std::optional<std::string> chosen(const std::vector<std::string>& items, const std::string& collection)
{
    const auto inside = std::ranges::find_if(
        items, [&collection](const std::string& item) { return item.starts_with(collection + "/"); });
    if (inside != items.end()) {
        return *inside;
    }
    return items.empty() ? std::nullopt : std::optional{items.front()};
}

} // namespace

KeyringResult<std::optional<std::string>> secret(KeyringSession& session, const std::string& service,
                                                 const std::string& account, GCancellable* stop)
{
    const KeyringResult<Found> found = find(session, {{"service", service}, {"account", account}}, stop);
    if (!found) {
        return std::unexpected(found.error());
    }
    if (const auto item = chosen(found->items.unlocked, found->collection)) {
        return session.secret(*item, stop);
    }
    if (!found->items.locked.empty()) {
        return std::unexpected(KeyringFailure::locked);
    }
    return std::nullopt;
}

KeyringResult<bool> contains(KeyringSession& session, const std::string& service, const std::string& account,
                             GCancellable* stop)
{
    const KeyringResult<Found> found = find(session, {{"service", service}, {"account", account}}, stop);
    if (!found) {
        return std::unexpected(found.error());
    }
    return !found->items.unlocked.empty() || !found->items.locked.empty();
}

KeyringResult<void> store(KeyringSession& session, const std::string& service, const std::string& account,
                          const std::string& secret, GCancellable* stop)
{
    const KeyringResult<std::string> collection = openDefault(session, stop);
    if (!collection) {
        return std::unexpected(collection.error());
    }
    return session.store(*collection, {{"service", service}, {"account", account}}, secret, stop);
}

KeyringResult<void> erase(KeyringSession& session, const std::string& service, const std::string& account,
                          GCancellable* stop)
{
    const KeyringResult<Found> found = find(session, {{"service", service}, {"account", account}}, stop);
    if (!found) {
        return std::unexpected(found.error());
    }
    for (const std::string& item : found->items.unlocked) {
        if (const KeyringResult<void> erased = session.erase(item, stop); !erased) {
            return erased;
        }
    }
    if (!found->items.locked.empty()) {
        return std::unexpected(KeyringFailure::locked);
    }
    return {};
}

KeyringResult<std::vector<std::string>> accounts(KeyringSession& session, const std::string& service,
                                                 const std::string& prefix, GCancellable* stop)
{
    const KeyringResult<Found> found = find(session, {{"service", service}}, stop);
    if (!found) {
        return std::unexpected(found.error());
    }
    if (!found->items.locked.empty()) {
        return std::unexpected(KeyringFailure::locked);
    }
    std::set<std::string> accounts;
    for (const std::string& item : found->items.unlocked) {
        const KeyringResult<KeyringSession::Attributes> attributes = session.attributes(item, stop);
        if (!attributes) {
            return std::unexpected(attributes.error());
        }
        const auto account = attributes->find("account");
        if (account != attributes->end() && account->second.starts_with(prefix)) {
            accounts.insert(account->second);
        }
    }
    return std::vector<std::string>(accounts.begin(), accounts.end());
}

} // namespace roost::KeyringItems
