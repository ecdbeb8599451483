#pragma once

#include "model/Clock.h"
#include "model/WidgetStore.h"
#include "programs/brisken-roost/CommandLine.h"
#include "programs/brisken-roost/CommandResult.h"
#include "programs/brisken-roost/StatusText.h"

namespace roost {

/// Prints what the shared file holds; reads nothing else. With `StatusFormat::waybar` the exit code is always
/// `fine`, since that bar hides a module on any other: the state is in the module's class.
/// Texts are those of the command's locale, or of the machine's.
CommandResult runStatus(const StatusCommand& command, const WidgetStore& store, const Clock& now,
                        TableStyle style);

} // namespace roost
