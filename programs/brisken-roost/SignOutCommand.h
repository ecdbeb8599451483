#pragma once

#include "programs/brisken-roost/AccountServices.h"
#include "programs/brisken-roost/CommandResult.h"

#include <QCoro/QCoroTask>

#include <stop_token>
#include <string>

namespace roost {

/// Forgets one profile here: its refresh token, then its record. Where the store cannot be asked, nothing
/// changes. The service's grant stays until the user ends it there.
QCoro::Task<CommandResult> runSignOut(std::string profileId, AccountServices services, std::stop_token stop);

} // namespace roost
