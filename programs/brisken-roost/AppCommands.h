#pragma once

#include "bus/ModelProxy.h"
#include "programs/brisken-roost/CommandResult.h"

#include <QCoro/QCoroTask>
#include <QProcessEnvironment>

#include <cstdio>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

/// The commands about profiles, done by the app that runs: what they would do themselves without it, in the
/// same words. Main thread.
namespace roost::AppCommands {

using App = std::shared_ptr<ModelProxy>;

/// Has fresh numbers fetched and waits for them; what came of each profile that was signed in, or of the one
/// that was asked for, is a line of the output. A stop ends the waiting, not the refresh.
QCoro::Task<CommandResult> refresh(App app, std::optional<std::string> profileId, std::stop_token stop);

/// The terminal that a sign-in was asked for in.
struct Terminal {
    /// Where the user is spoken to; outlives the task.
    std::FILE* output = stderr;
    /// Whether a person sits at standard input, who may paste the address that the browser ends at. Otherwise
    /// it is left alone.
    bool isInteractive = false;
    QProcessEnvironment environment;
};

/// Has a profile signed in, and tells where to do that by hand. A stop gives the sign-in up.
QCoro::Task<CommandResult> signIn(App app, Terminal terminal, std::stop_token stop);

/// Has the app give up the sign-in that it waits for; fine when it waits for none.
QCoro::Task<CommandResult> cancelSignIn(App app);

QCoro::Task<CommandResult> signOut(App app, std::string profileId);

CommandResult accounts(const AppState& state);

QCoro::Task<CommandResult> select(App app, std::string profileId);

} // namespace roost::AppCommands
