#pragma once

#include "model/Settings.h"
#include "programs/brisken-roost/AccountFile.h"
#include "programs/brisken-roost/CommandResult.h"

#include <string>

namespace roost {

/// Has the app show that profile when it starts.
CommandResult runSelect(const std::string& profileId, const AccountFile& file, Settings& settings);

} // namespace roost
