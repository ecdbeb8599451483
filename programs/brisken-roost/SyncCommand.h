#pragma once

#include "programs/brisken-roost/AccountServices.h"
#include "programs/brisken-roost/CommandResult.h"

#include <QCoro/QCoroTask>

#include <optional>
#include <stop_token>
#include <string>

namespace roost {

/// What a refresh came to for one profile.
struct RefreshedProfile {
    ExitCode code = ExitCode::fine;
    std::string told;
};

/// Adds a line about the profile of that name to the output; a failure among several profiles counts most.
void add(CommandResult& result, const std::string& name, const RefreshedProfile& profile);

/// One sync now, of one signed-in profile or of all, one after the other; what came of each is a line of the
/// output and stands in the shared file. `failure` when one failed, `nothingToShow` when one is signed out.
QCoro::Task<CommandResult> runSync(std::optional<std::string> profileId, AccountServices services,
                                   std::stop_token stop);

} // namespace roost
