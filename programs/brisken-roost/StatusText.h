#pragma once

#include "present/RoostFormat.h"
#include "programs/brisken-roost/StatusReport.h"

#include <string>

namespace roost {

/// What the terminal that shows a table can do.
struct TableStyle {
    bool colour = false;
    /// How many columns there are; 0: as many as the table needs.
    int width = 0;
};

/// The report as one table: a card of lines for each profile (`statusCard`), an empty line between two, every
/// line ended by a newline. Both columns begin at the same place throughout, whatever the script: widths are
/// those of a terminal, and what runs from right to left is isolated, so that it turns nothing beside it.
/// Names and post texts are elided where the terminal is too narrow, numbers, ages and times never.
std::string statusText(const StatusReport& report, const RoostFormat& format, TableStyle style);

} // namespace roost
