#pragma once

#include "model/RoostSnapshot.h"

#include <optional>
#include <string>
#include <variant>

namespace roost {

/// Why a refresh brought nothing new; the profile stays signed in.
struct SyncReason {
    enum class Kind {
        /// The service answered 429 or 5xx.
        unavailable,
        /// No usable answer, or no access token for a reason that is no verdict on the sign-in.
        unreachable,
        /// An answer that could not be understood.
        malformed,
    };

    Kind kind = Kind::unreachable;
    /// How long the service asks to be left alone, in seconds as sent: unclamped, possibly not a number. Only
    /// with `unavailable`.
    std::optional<double> retryAfter;

    bool operator==(const SyncReason&) const = default;
};

/// What one refresh of one profile came to.
namespace SyncOutcome {

/// Fresh numbers.
struct Updated {
    RoostSnapshot snapshot;
    bool operator==(const Updated&) const = default;
};

/// Nothing new this time.
struct Failed {
    SyncReason reason;
    bool operator==(const Failed&) const = default;
};

/// The profile's authorization is gone; the user must sign in again.
struct SignedOut {
    bool operator==(const SignedOut&) const = default;
};

using Any = std::variant<Updated, Failed, SignedOut>;

} // namespace SyncOutcome

/// "unavailable", "unavailable, retry after 120 s", "unreachable", "malformed": for log lines and the command
/// line.
std::string describe(const SyncReason& reason);

} // namespace roost
