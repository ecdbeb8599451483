#pragma once

#include "programs/brisken-roost/CommandLine.h"
#include "programs/brisken-roost/CommandResult.h"

#include <QCoro/QCoroTask>
#include <QProcessEnvironment>

#include <chrono>

namespace roost {

/// Hands the address over to the process that waits for it. Always `fine`, since nobody who could do better
/// sees the exit code: where nobody takes it, one log line says so, without the address. `timeout` is for
/// each step.
QCoro::Task<CommandResult> runOpenCallback(OpenCallbackCommand command, QProcessEnvironment environment,
                                           std::chrono::milliseconds timeout = std::chrono::seconds(5));

} // namespace roost
