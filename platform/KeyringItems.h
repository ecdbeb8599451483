#pragma once

#include "platform/KeyringSession.h"

#include <optional>
#include <string>
#include <vector>

/// The items of one service (the attribute of that name) in the Secret Service, by account. Each function
/// first finds out whether the default collection can be read at all, and after its search whether it still
/// can, so that "none" always means that there is none. New items go into the default collection, and where
/// others hold the same account too, the default one counts. Keyring thread; they block until `stop` is
/// cancelled.
namespace roost::KeyringItems {

KeyringResult<std::optional<std::string>> secret(KeyringSession& session, const std::string& service,
                                                 const std::string& account, GCancellable* stop);

KeyringResult<bool> contains(KeyringSession& session, const std::string& service, const std::string& account,
                             GCancellable* stop);

KeyringResult<void> store(KeyringSession& session, const std::string& service, const std::string& account,
                          const std::string& secret, GCancellable* stop);

/// Erases every item of that account; success when there is none any more.
KeyringResult<void> erase(KeyringSession& session, const std::string& service, const std::string& account,
                          GCancellable* stop);

/// Those that begin with `prefix`, each once, ascending by their bytes.
KeyringResult<std::vector<std::string>> accounts(KeyringSession& session, const std::string& service,
                                                 const std::string& prefix, GCancellable* stop);

} // namespace roost::KeyringItems
