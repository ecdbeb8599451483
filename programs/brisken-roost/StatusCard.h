#pragma once

#include "present/RoostFormat.h"
#include "programs/brisken-roost/StatusReport.h"

#include <string>
#include <vector>

namespace roost {

/// How a terminal shows a text.
enum class Tone { plain, heading, quiet, warning, bad };

/// One line about a profile, in two columns: a label, and what there is to say about it.
struct StatusLine {
    std::string label;
    Tone labelTone = Tone::plain;
    /// Short, and useless when cut.
    std::string detail;
    Tone detailTone = Tone::plain;
    /// Somebody's words after the detail; may be cut.
    std::string words;

    bool operator==(const StatusLine&) const = default;
};

/// What there is to say about a profile at `now`, beneath a first line with its name and state.
///
/// Numbers and dates are `format`'s, words the catalogue's, as everywhere where a profile is shown: a card is
/// in one language. What the program says as a command (its help, its sentences on standard error, the names
/// of states in JSON) is English in every locale: people look such messages up, and the catalogue holds what
/// the windows say. Texts of the service are on one line, without anything that a terminal would act upon.
std::vector<StatusLine> statusCard(const StatusReport::Entry& entry, Date now, const RoostFormat& format);

} // namespace roost
