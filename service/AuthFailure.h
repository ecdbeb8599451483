#pragma once

#include "service/RoostAuthError.h"
#include "service/SecretStore.h"

#include <expected>
#include <string>
#include <variant>

namespace roost {

/// The caller asked to stop before there was a result.
struct Stopped {
    bool operator==(const Stopped&) const = default;
};

/// Another process has been refreshing the same profile for too long, or it cannot be told whether one is.
struct RefreshBlocked {
    bool operator==(const RefreshBlocked&) const = default;
};

/// Why a step of signing in, or of getting an access token, came to nothing. Only a `RoostAuthError` can be a
/// verdict on the sign-in; the others are trouble on this machine and pass.
using AuthFailure = std::variant<RoostAuthError, Stopped, SecretsUnavailable, RefreshBlocked>;

template <class T>
using AuthResult = std::expected<T, AuthFailure>;

/// Whether `failure` is a `RoostAuthError` of that kind.
inline bool isAuthError(const AuthFailure& failure, RoostAuthError::Kind kind)
{
    const auto* error = std::get_if<RoostAuthError>(&failure);
    return error != nullptr && error->kind == kind;
}

/// "invalidGrant", "stopped", "the secret store is locked": for log lines.
std::string describe(const AuthFailure& failure);

/// The sentence that users are shown, in English; empty when they stopped it themselves.
std::string messageFor(const AuthFailure& failure);

} // namespace roost
