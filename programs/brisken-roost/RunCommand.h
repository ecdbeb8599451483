#pragma once

#include "programs/brisken-roost/CommandResult.h"
#include "programs/brisken-roost/Machine.h"

#include <QCoro/QCoroTask>
#include <QProcessEnvironment>
#include <QUrl>

namespace roost {

/// Runs the app until it is asked to quit: by another process over the bus, by a signal that says to end, by
/// the end of the session. Where the app runs already, that one is brought to the front, and this ends.
/// `machine` outlives the task.
QCoro::Task<CommandResult> runCompanion(Machine* machine, QUrl base, QProcessEnvironment environment);

} // namespace roost
