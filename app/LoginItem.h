#pragma once

namespace roost {

/// Whether the desktop starts the app when the user logs in. Main thread.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    /// Whether it does.
    virtual bool isEnabled() const = 0;

    /// Has it do so, or not. Whether that could be set.
    virtual bool setEnabled(bool enabled) = 0;
};

} // namespace roost
