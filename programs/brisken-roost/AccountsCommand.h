#pragma once

#include "programs/brisken-roost/AccountServices.h"
#include "programs/brisken-roost/CommandResult.h"

#include <QCoro/QCoroTask>

#include <string>
#include <vector>

namespace roost {

/// A profile among others.
struct AccountLine {
    std::string id;
    std::string state;
    std::string name;
};

/// A line each, in columns.
std::string table(const std::vector<AccountLine>& lines);

/// Lists the profiles, a line each: id, state and name, in the order of the shared file, then those that have
/// a token and no record yet. `nothingToShow` when there is none.
QCoro::Task<CommandResult> runAccounts(AccountServices services);

} // namespace roost
