#pragma once

#include "programs/brisken-roost/StatusReport.h"

#include <string>

namespace roost {

/// The report as one line of JSON, for scripts: "accounts", each with its "state", and the best of these as
/// "state".
std::string statusJson(const StatusReport& report);

/// The report as one line of JSON for a waybar custom module: "text", "tooltip" and the state as "class".
std::string statusWaybar(const StatusReport& report);

} // namespace roost
