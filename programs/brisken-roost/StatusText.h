#pragma once

#include "programs/brisken-roost/StatusReport.h"

#include <string>

namespace roost {

/// What the terminal that shows a table can do.
struct TableStyle {
    bool colour = false;
    /// How many columns there are; 0: as many as the table needs.
    int width = 0;
};

/// The report as a table, one line per profile beneath a line of headings, each ended by a newline. Control
/// characters in texts come out as "·": nothing that the service sends can steer the terminal. Names and post
/// texts are elided where the terminal is too narrow, numbers never.
std::string statusText(const StatusReport& report, TableStyle style);

} // namespace roost
