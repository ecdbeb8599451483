#include "programs/brisken-roost/SignOutCommand.h"

#include "programs/brisken-roost/TerminalText.h"

#include <algorithm>

namespace roost {

QCoro::Task<CommandResult> runSignOut(std::string profileId, AccountServices services, std::stop_token stop)
{
    auto listing = services.signedInProfiles();
    const auto signedIn = co_await listing;
    if (!signedIn) {
        co_return failed(ExitCode::failure, sentenceFor(signedIn.error()));
    }
    const auto record = services.file.record(profileId);
    if (!record && std::ranges::find(*signedIn, profileId) == signedIn->end()) {
        co_return failed(ExitCode::nothingToShow,
                         "There is no profile \"" + onOneLine(profileId) + "\" here.");
    }
    // A refresh in another process ends before, and so cannot bring the token back.
    auto locking = services.lock.acquire(profileId, stop);
    const auto held = co_await locking;
    if (held == nullptr) {
        co_return failed(ExitCode::failure, messageFor(AuthFailure{RefreshBlocked{}}));
    }
    const auto session = services.session(profileId);
    auto signingOut = session->signOut();
    if (!co_await signingOut) {
        co_return failed(ExitCode::failure, "The keyring does not answer. Try again.");
    }
    if (!services.file.remove(profileId)) {
        co_return failed(ExitCode::failure, "Signed out, but the last numbers could not be removed.");
    }
    const std::string name = record ? record->profileName : profileId;
    co_return CommandResult{ExitCode::fine,
                            "Signed out of " + onOneLine(name) +
                                ". Roost lists this connection until you end it there.\n",
                            {}};
}

} // namespace roost
