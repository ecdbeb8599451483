#pragma once

#include "programs/brisken-roost/AccountServices.h"
#include "programs/brisken-roost/CommandResult.h"

#include <QCoro/QCoroTask>

namespace roost {

/// Lists the profiles, a line each: id, state and name, in the order of the shared file, then those that have
/// a token and no record yet. `nothingToShow` when there is none.
QCoro::Task<CommandResult> runAccounts(AccountServices services);

} // namespace roost
