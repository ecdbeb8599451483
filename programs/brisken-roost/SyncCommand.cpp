#include "programs/brisken-roost/SyncCommand.h"

#include "model/Pause.h"
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

/// Whether the session's refresh token is in the store, after some attempts: it is lost with this process.
QCoro::Task<bool> savedAtLast(std::shared_ptr<AccountSession> session)
{
    using namespace std::chrono_literals;
    for (int attempts = 3;; --attempts) {
        auto saving = session->saveUnsaved();
        const bool isSaved = co_await saving;
        if (isSaved || attempts == 1) {
            co_return bool{isSaved};
        }
        auto pausing = pauseOnEventLoop(1s, {});
        co_await pausing;
    }
}

/// The name that people know the profile by.
std::string nameOf(const std::string& profileId, const AccountFile& file)
{
    const auto record = file.record(profileId);
    return onOneLine(record ? record->profileName : profileId);
}

QCoro::Task<RefreshedProfile> syncOne(std::string id, AccountServices services, std::stop_token stop)
{
    const auto session = services.session(id);
    const AccountSync sync{services.api};
    auto fetching = sync.fetch(session, stop);
    const SyncOutcome::Any outcome = co_await fetching;
    if (stop.stop_requested()) {
        session->quit();
    }
    // After a stop a refresh may still be under way: its token must be stored before the program ends.
    auto settling = session->settled();
    co_await settling;
    auto saving = savedAtLast(session);
    const bool isSaved = co_await saving;

    const std::string told = std::visit(Tell{}, outcome);
    auto asking = services.signedInProfiles();
    const auto signedIn = co_await asking;
    const bool isGone = signedIn && std::ranges::find(*signedIn, id) == signedIn->end();
    if (isGone && !std::holds_alternative<SyncOutcome::SignedOut>(outcome)) {
        // Signed out elsewhere meanwhile: no record comes back for it.
        co_return RefreshedProfile{ExitCode::nothingToShow, "signed out meanwhile"};
    }
    if (!services.file.note(id, outcome)) {
        co_return RefreshedProfile{ExitCode::failure, told + "; the numbers could not be written"};
    }
    if (!isSaved) {
        co_return RefreshedProfile{
            ExitCode::failure,
            told + "; the keyring did not take the renewed sign-in, so it may have to be made again"};
    }
    co_return RefreshedProfile{codeOf(outcome), told};
}

} // namespace

void add(CommandResult& result, const std::string& name, const RefreshedProfile& profile)
{
    result.output += name + ": " + profile.told + "\n";
    if (result.code != ExitCode::failure && profile.code != ExitCode::fine) {
        result.code = profile.code;
    }
}

QCoro::Task<CommandResult> runSync(std::optional<std::string> profileId, AccountServices services,
                                   std::stop_token stop)
{
    auto listing = services.signedInProfiles();
    const auto signedIn = co_await listing;
    if (!signedIn) {
        co_return failed(ExitCode::failure, sentenceFor(signedIn.error()));
    }
    if (profileId && std::ranges::find(*signedIn, *profileId) == signedIn->end()) {
        co_return notSignedIn(*profileId);
    }
    if (signedIn->empty()) {
        co_return nobodySignedIn();
    }
    const std::vector<std::string> ids = profileId ? std::vector{*profileId} : *signedIn;
    CommandResult result;
    for (const std::string& id : ids) {
        if (stop.stop_requested()) {
            result.error += "brisken-roost: Stopped.\n";
            result.code = ExitCode::failure;
            break;
        }
        auto syncing = syncOne(id, services, stop);
        const RefreshedProfile one = co_await syncing;
        add(result, nameOf(id, services.file), one);
    }
    co_return result;
}

} // namespace roost
