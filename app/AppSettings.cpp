#include "app/AppSettings.h"

#include "notify/NotificationKind.h"

namespace roost::AppSettings {

namespace {

/// The one table of defaults: every boolean of the app is in it.
constexpr auto defaults = [] {
    std::array<Settings::Default, 1 + notificationKinds.size()> table{};
    table.back() = {didApplyLaunchAtLoginDefault, false};
    for (std::size_t kind = 0; kind < notificationKinds.size(); ++kind) {
        table[kind] = {notificationKinds[kind].switchKey, true};
    }
    return table;
}();

} // namespace

void registerDefaults(Settings& settings) { settings.registerDefaults(defaults); }

} // namespace roost::AppSettings
