#pragma once

#include "platform/GLibOwned.h"
#include "platform/KeyringFailure.h"

#include <libsecret/secret.h>

#include <QString>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace roost {

/// One conversation with the Secret Service, over a connection to the session bus that nobody else uses. Asks
/// the user nothing. Everything blocks until there is an answer or `stop` is cancelled, and belongs to one
/// thread, the one whose own main context is the current one. What is found and read is of one process,
/// the one that was the service when this was opened; when it leaves, calls fail as `notAnswering`. After a
/// failure other than `locked` it is not worth keeping.
class KeyringSession {
public:
    /// Names and values; UTF-8 without a zero byte.
    using Attributes = std::map<std::string, std::string>;

    /// Object paths.
    struct Items {
        std::vector<std::string> unlocked;
        std::vector<std::string> locked;
    };

    static constexpr const char* noQuestion = "/";

    /// Connects to the first Unix socket that `addresses` (D-Bus Specification, "Server Addresses") names and
    /// behind which a bus answers. `noService` when none of them exists: no bus is started for the asking.
    static KeyringResult<std::unique_ptr<KeyringSession>> open(const QString& addresses, GCancellable* stop);

    /// Whether the service is still the one that this was opened with, as far as is known by now.
    bool isCurrent() const;

    /// The path of the default collection; `noCollection` when the service has none.
    KeyringResult<std::string> defaultCollection(GCancellable* stop);

    KeyringResult<bool> isOpen(const std::string& collection, GCancellable* stop);

    /// Success when the collection is open, or opens without a question, as one without a password does.
    KeyringResult<void> ensureOpen(const std::string& collection, GCancellable* stop);

    /// Opens the collection, where that needs no question: then it is `noQuestion`. Otherwise the path of the
    /// question that would have to be put to the user, and is not.
    KeyringResult<std::string> unlock(const std::string& collection, GCancellable* stop);

    /// The items of all collections that have these attributes and maybe more.
    KeyringResult<Items> search(const Attributes& attributes, GCancellable* stop);

    KeyringResult<Attributes> attributes(const std::string& item, GCancellable* stop);

    KeyringResult<std::string> secret(const std::string& item, GCancellable* stop);

    /// Makes an item in the collection, or gives the one with the same attributes this secret, in one step.
    KeyringResult<void> store(const std::string& collection, const Attributes& attributes,
                              const std::string& secret, GCancellable* stop);

    KeyringResult<void> erase(const std::string& item, GCancellable* stop);

    /// Calls any method of the service; `arguments` is taken over, floating as it is.
    KeyringResult<GOwnedVariant> call(const std::string& path, const char* interface, const char* method,
                                      GVariant* arguments, const char* replyType, GCancellable* stop);

    GDBusConnection* connection() const { return connection_.get(); }

private:
    KeyringSession(GOwned<GDBusConnection> connection, GOwned<SecretService> service);

    std::unexpected<KeyringFailure> failed(const GErrorSlot& error) const;
    KeyringResult<GOwnedVariant> property(const std::string& path, const char* interface, const char* name,
                                          const char* type, GCancellable* stop);

    GOwned<GDBusConnection> connection_;
    GOwned<SecretService> service_;
    /// The unique name of the service; empty only while there is none, before this is open.
    std::string owner_;
};

} // namespace roost
