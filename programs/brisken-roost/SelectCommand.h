#pragma once

#include "model/Settings.h"
#include "programs/brisken-roost/AccountFile.h"
#include "programs/brisken-roost/CommandResult.h"

#include <string>

namespace roost {

/// Says that there is no such profile.
CommandResult noSuchProfile(const std::string& profileId);

/// Has the app show that profile when it starts.
CommandResult runSelect(const std::string& profileId, const AccountFile& file, Settings& settings);

} // namespace roost
