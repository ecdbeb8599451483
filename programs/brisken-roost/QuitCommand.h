#pragma once

#include "bus/ModelProxy.h"
#include "programs/brisken-roost/CommandResult.h"

#include <QCoro/QCoroTask>

#include <chrono>
#include <filesystem>
#include <memory>
#include <stop_token>

namespace roost {

/// Says that there is nothing to end.
CommandResult notRunning();

/// Ends the running app and waits that long until it has ended and `lockFile` is free.
QCoro::Task<CommandResult> runQuit(std::shared_ptr<ModelProxy> app, std::filesystem::path lockFile,
                                   std::chrono::milliseconds patience, std::stop_token stop);

} // namespace roost
