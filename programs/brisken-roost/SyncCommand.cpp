#include "programs/brisken-roost/SyncCommand.h"

#include "model/RoostLog.h"
#include "programs/brisken-roost/TerminalText.h"
#include "service/AccountSync.h"

#include <algorithm>

namespace roost {

namespace {

/// Logs the outcome and says it in a few words.
struct Tell {
    std::string operator()(const SyncOutcome::Updated&) const
    {
        qCInfo(RoostLog::sync, "refresh: updated");
        return "updated";
    }
    std::string operator()(const SyncOutcome::Failed& outcome) const
    {
        const std::string reason = describe(outcome.reason);
        qCWarning(RoostLog::sync, "refresh: failed (%s), keeping the last numbers", reason.c_str());
        return "failed (" + reason + "), keeping the last numbers";
    }
    std::string operator()(const SyncOutcome::SignedOut&) const
    {
        qCWarning(RoostLog::sync, "refresh: Roost ended this authorization, profile signed out");
        return "signed out; run brisken-roost sign-in";
    }
};

ExitCode codeOf(const SyncOutcome::Any& outcome)
{
    if (std::holds_alternative<SyncOutcome::Updated>(outcome)) {
        return ExitCode::fine;
    }
    return std::holds_alternative<SyncOutcome::Failed>(outcome) ? ExitCode::failure : ExitCode::nothingToShow;
}

/// The name that people know the profile by.
std::string nameOf(const std::string& profileId, const AccountFile& file)
{
    const auto record = file.record(profileId);
    return onOneLine(record ? record->profileName : profileId);
}

} // namespace

QCoro::Task<CommandResult> runSync(std::optional<std::string> profileId, AccountServices services,
                                   std::stop_token stop)
{
    auto listing = services.signedInProfiles();
    const auto signedIn = co_await listing;
    if (!signedIn) {
        co_return failed(ExitCode::failure, sentenceFor(signedIn.error()));
    }
    if (profileId && std::ranges::find(*signedIn, *profileId) == signedIn->end()) {
        co_return failed(ExitCode::nothingToShow,
                         "The profile \"" + onOneLine(*profileId) + "\" is not signed in here.");
    }
    if (signedIn->empty()) {
        co_return nobodySignedIn();
    }
    const std::vector<std::string> ids = profileId ? std::vector{*profileId} : *signedIn;
    const AccountSync sync{services.api};
    CommandResult result;
    for (const std::string& id : ids) {
        if (stop.stop_requested()) {
            result.code = ExitCode::failure;
            result.error = "brisken-roost: Stopped.\n";
            break;
        }
        const auto session = services.session(id);
        auto fetching = sync.fetch(session, stop);
        const SyncOutcome::Any outcome = co_await fetching;
        // After a stop a refresh may still be under way: its token must be stored before the program ends.
        auto settling = session->settled();
        co_await settling;
        const ExitCode code = codeOf(outcome);
        const std::string told = std::visit(Tell{}, outcome);
        if (!services.file.note(id, outcome)) {
            co_return failed(ExitCode::failure, "The numbers could not be written.");
        }
        result.output += nameOf(id, services.file) + ": " + told + "\n";
        if (result.code != ExitCode::failure && code != ExitCode::fine) {
            result.code = code;
        }
    }
    co_return result;
}

} // namespace roost
