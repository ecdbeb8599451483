#pragma once

#include "programs/brisken-roost/AccountServices.h"
#include "programs/brisken-roost/CommandResult.h"
#include "service/SignInFlow.h"

#include <QCoro/QCoroTask>

#include <stop_token>

namespace roost {

/// Signs one profile in: a new one, or one that is known already in its place. Asks the user to unlock the
/// secret store first; where there is none that can keep the sign-in, no browser is opened. On failure
/// nothing is stored and the sentence for it is told; a cancelled sign-in says just that.
QCoro::Task<CommandResult> runSignIn(SignInFlow flow, AccountServices services, std::stop_token stop);

} // namespace roost
