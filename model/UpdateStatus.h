#pragma once

#include <optional>
#include <string>

namespace roost {

/// What people are told of updates. A plain value; equality is member-wise.
struct UpdateStatus {
    /// The version that is downloaded and will be there after a restart.
    std::optional<std::string> readyVersion;
    /// A version that was found and not downloaded yet.
    std::optional<std::string> availableVersion;
    /// Whether `UpdateControl::checkNow` would do anything now.
    bool canCheck = false;

    bool operator==(const UpdateStatus&) const = default;
};

} // namespace roost
