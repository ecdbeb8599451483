#pragma once

#include "present/RoostFormat.h"
#include "programs/brisken-roost/StatusReport.h"

#include <string>

namespace roost {

/// The report as one line of JSON, for scripts: "accounts", each with its "state", and the best of these as
/// "state". The same in every locale.
std::string statusJson(const StatusReport& report);

/// The report as one line of JSON for a waybar custom module: the short count of views as "text", the table
/// as "tooltip", both as `format` writes, and the state as "class".
std::string statusWaybar(const StatusReport& report, const RoostFormat& format);

} // namespace roost
