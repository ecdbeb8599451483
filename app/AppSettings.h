#pragma once

#include "model/Settings.h"

#include <string_view>

/// The settings of the app. The switches of notifications are named in notify/NotificationKind.h.
namespace roost::AppSettings {

/// Text: the profile whose numbers are shown; absent as long as there is none.
inline constexpr std::string_view selectedProfileId = "selectedProfileId";

/// Boolean: whether opening at login was switched on once already, so that a later choice is never
/// overridden.
inline constexpr std::string_view didApplyLaunchAtLoginDefault = "didApplyLaunchAtLoginDefault";

/// Has what holds until the user chooses: every notification is on, everything else is off. Once, when the
/// app starts, before anybody reads a setting.
void registerDefaults(Settings& settings);

} // namespace roost::AppSettings
