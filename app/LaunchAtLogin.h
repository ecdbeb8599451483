#pragma once

#include "app/LoginItem.h"

namespace roost::LaunchAtLogin {

/// Has the app open at login, or no longer; nothing is done where that is so already. The item's own error.
std::expected<void, std::string> set(LoginItem& item, bool enabled);

} // namespace roost::LaunchAtLogin
