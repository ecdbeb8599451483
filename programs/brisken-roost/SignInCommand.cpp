#include "programs/brisken-roost/SignInCommand.h"

#include "model/RoostLog.h"
#include "programs/brisken-roost/TerminalText.h"

namespace roost {

namespace {

CommandResult failedSignIn(const AuthFailure& failure)
{
    if (isAuthError(failure, RoostAuthError::Kind::cancelled) || std::holds_alternative<Stopped>(failure)) {
        qCInfo(RoostLog::auth, "sign-in cancelled");
        return failed(ExitCode::failure, "The sign-in was cancelled.");
    }
    qCCritical(RoostLog::auth, "sign-in failed: %s", describe(failure).c_str());
    const auto* unavailable = std::get_if<SecretsUnavailable>(&failure);
    return failed(ExitCode::failure, unavailable ? sentenceFor(*unavailable) : messageFor(failure));
}

/// What keeps the store from keeping a sign-in, after the user was asked to open it.
QCoro::Task<std::optional<SecretsUnavailable>> obstacle(AccountServices services)
{
    auto asking = services.signedInProfiles();
    const auto before = co_await asking;
    if (before) {
        co_return std::nullopt;
    }
    if (before.error().why == SecretsUnavailable::Why::notAnswering) {
        co_return before.error();
    }
    auto unlocking = services.secrets.unlock();
    if (!co_await unlocking) {
        co_return before.error();
    }
    auto askingAgain = services.signedInProfiles();
    const auto after = co_await askingAgain;
    co_return after ? std::nullopt : std::optional{after.error()};
}

} // namespace

QCoro::Task<CommandResult> runSignIn(SignInFlow flow, AccountServices services, std::stop_token stop)
{
    auto looking = obstacle(services);
    if (const auto unavailable = co_await looking) {
        co_return failed(ExitCode::failure, sentenceFor(*unavailable));
    }
    qCInfo(RoostLog::auth, "sign-in started");
    auto flowing = flow.run(stop);
    auto result = co_await flowing;
    if (!result) {
        co_return failedSignIn(result.error());
    }
    const RoostSnapshot::Profile profile = result->snapshot.profile;
    // A refresh of the profile's former sign-in may be under way in another process: it ends before, and so
    // cannot put its token in place of the new one.
    auto locking = services.lock.acquire(profile.id, stop);
    const auto held = co_await locking;
    if (held == nullptr) {
        co_return failedSignIn(stop.stop_requested() ? AuthFailure{Stopped{}} : RefreshBlocked{});
    }
    const CommandResult refused =
        failed(ExitCode::failure, "The keyring did not take the sign-in. Try again.");
    // Before the token, which is worth nothing without it and would take the place of a former one.
    auto storing = services.oauth.storeClientIDs();
    if (!co_await storing) {
        co_return refused;
    }
    const auto session = services.session(profile.id);
    auto adopting = session->adopt(result->tokens);
    if (const auto adopted = co_await adopting; !adopted) {
        qCWarning(RoostLog::console, "Brisken Roost: the keychain refused the refresh token (%d)",
                  adopted.error().status);
        co_return refused;
    }
    if (!services.file.note(profile.id, SyncOutcome::Updated{std::move(result->snapshot)})) {
        co_return failed(ExitCode::failure, "Signed in, but the numbers could not be written.");
    }
    qCInfo(RoostLog::auth, "sign-in finished");
    co_return CommandResult{ExitCode::fine, "Signed in to " + onOneLine(profile.name) + ".\n", {}};
}

} // namespace roost
