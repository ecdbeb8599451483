#include "programs/brisken-roost/SignOutCommand.h"

#include "programs/brisken-roost/TerminalText.h"

#include <algorithm>

namespace roost {

namespace {

/// Removes the last numbers, and says who is signed out (by name, or by id without a record), then `told`.
CommandResult forgotten(const std::string& profileId, const AccountFile& file, const std::string& told)
{
    const auto record = file.record(profileId);
    if (!file.remove(profileId)) {
        return failed(ExitCode::failure, "Signed out, but the last numbers could not be removed.");
    }
    return {ExitCode::fine,
            "Signed out of " + onOneLine(record ? record->profileName : profileId) + ". " + told + "\n",
            {}};
}

} // namespace

QCoro::Task<CommandResult> runSignOut(std::string profileId, AccountServices services, std::stop_token stop)
{
    auto listing = services.signedInProfiles();
    const auto signedIn = co_await listing;
    const bool isRecorded = services.file.record(profileId).has_value();
    if (!signedIn) {
        if (isRecorded && signedIn.error().why == SecretsUnavailable::Why::noService) {
            co_return forgotten(profileId, services.file,
                                "There is no keyring here that could hold its sign-in.");
        }
        co_return failed(ExitCode::failure, sentenceFor(signedIn.error()));
    }
    if (!isRecorded && std::ranges::find(*signedIn, profileId) == signedIn->end()) {
        co_return noSuchProfile(profileId);
    }
    // A refresh in another process ends before, and so cannot bring the token back.
    auto locking = services.lock.acquire(profileId, stop);
    const auto held = co_await locking;
    if (stop.stop_requested()) {
        co_return failed(ExitCode::failure, "Stopped.");
    }
    if (held == nullptr) {
        co_return failed(ExitCode::failure, messageFor(AuthFailure{RefreshBlocked{}}));
    }
    const auto session = services.session(profileId);
    auto signingOut = session->signOut();
    if (!co_await signingOut) {
        co_return failed(ExitCode::failure, sentenceFor({SecretsUnavailable::Why::notAnswering}));
    }
    co_return forgotten(profileId, services.file, "Roost lists this connection until you end it there.");
}

} // namespace roost
