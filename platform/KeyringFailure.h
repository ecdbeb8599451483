#pragma once

#include "service/SecretStore.h"

#include <gio/gio.h>

#include <expected>

namespace roost {

/// Why the Secret Service did not do what it was asked for.
enum class KeyringFailure {
    /// The collection is locked, and only the user can open it.
    locked,
    /// There is no session bus, or nobody on it who keeps secrets.
    noService,
    /// The service has no default collection.
    noCollection,
    /// No answer in time, the bus cannot be reached, or it or the service left meanwhile.
    notAnswering,
    /// It answered with any other error.
    refused,
};

template <class T>
using KeyringResult = std::expected<T, KeyringFailure>;

/// What the error of a call says. A call that was cancelled is one that got no answer, and so is a missing
/// error.
KeyringFailure failureOf(const GError* error);

SecretsUnavailable unavailableFor(KeyringFailure failure);

KeychainError errorFor(KeyringFailure failure);

} // namespace roost
