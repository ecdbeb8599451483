#pragma once

#include <expected>
#include <string>

namespace roost {

/// What has the desktop start the app when the user logs in. Every call looks at how things are now. Main
/// thread.
class LoginItem {
public:
    enum class Status {
        notRegistered,
        enabled,
        /// It is registered, and the desktop does not start it: the user switched it off there, or this
        /// desktop starts no such items. Only the user can change that.
        requiresApproval,
    };

    virtual ~LoginItem() = default;

    virtual Status status() const = 0;

    /// Registers the app; what the user switched off in the desktop stays off. The error is for the log.
    virtual std::expected<void, std::string> add() = 0;

    /// Takes the registration back, whatever its status.
    virtual std::expected<void, std::string> remove() = 0;
};

} // namespace roost
