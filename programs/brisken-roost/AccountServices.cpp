#include "programs/brisken-roost/AccountServices.h"

#include "programs/brisken-roost/TerminalText.h"
#include "service/RefreshTokenKeeper.h"

namespace roost {

QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
AccountServices::signedInProfiles() const
{
    auto listing = secrets.keys(std::string{refreshTokenPrefix});
    auto ids = co_await listing;
    if (ids) {
        for (std::string& id : *ids) {
            id.erase(0, refreshTokenPrefix.size());
        }
    }
    co_return ids;
}

CommandResult nobodySignedIn()
{
    return failed(ExitCode::nothingToShow, "No profile is signed in here yet.");
}

CommandResult notSignedIn(const std::string& profileId)
{
    return failed(ExitCode::nothingToShow,
                  "The profile \"" + onOneLine(profileId) + "\" is not signed in here.");
}

CommandResult noSuchProfile(const std::string& profileId)
{
    return failed(ExitCode::nothingToShow, "There is no profile \"" + onOneLine(profileId) + "\" here.");
}

std::string sentenceFor(SecretsUnavailable unavailable)
{
    switch (unavailable.why) {
    case SecretsUnavailable::Why::locked:
        return "The keyring is locked. Unlock it and try again.";
    case SecretsUnavailable::Why::noService:
        return "There is no keyring to keep the sign-in in. Install one that offers the Secret Service, for "
               "example gnome-keyring, KWallet or KeePassXC, and try again.";
    case SecretsUnavailable::Why::notAnswering:
        return "The keyring does not answer. Try again.";
    }
    return {};
}

} // namespace roost
