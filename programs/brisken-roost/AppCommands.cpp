#include "programs/brisken-roost/AppCommands.h"

#include "model/Arrival.h"
#include "platform/CallbackAddress.h"
#include "platform/CallbackReceiver.h"
#include "programs/brisken-roost/AccountServices.h"
#include "programs/brisken-roost/AccountsCommand.h"
#include "programs/brisken-roost/SignInByHand.h"
#include "programs/brisken-roost/SyncCommand.h"
#include "programs/brisken-roost/TerminalText.h"

namespace roost::AppCommands {

namespace {

using Answer = ModelProxy::Answer;
using Record = RoostAccountRecord;

constexpr std::chrono::seconds patience{5};

CommandResult noAnswer() { return failed(ExitCode::failure, "Brisken Roost does not answer."); }

/// The name that people know the profile by, on one line.
std::string nameOf(const AppState& state, const std::string& profileId)
{
    const Record* const record = state.account(profileId);
    return onOneLine(record != nullptr ? record->profileName : profileId);
}

/// What a refresh came to, for a profile that was signed in before it.
RefreshedProfile whatCameOf(const Record& before, const Record* after)
{
    if (after == nullptr) {
        return {ExitCode::nothingToShow, "signed out meanwhile"};
    }
    if (after->status == Record::Status::signedOut) {
        return {ExitCode::nothingToShow, "signed out; run brisken-roost sign-in"};
    }
    // Every attempt is noted, and numbers that came are noted at the same time.
    if (after->fetchedAt && after->fetchedAt == after->lastAttemptAt) {
        return {ExitCode::fine, "updated"};
    }
    const bool isTried = after->lastAttemptAt != before.lastAttemptAt;
    return {ExitCode::failure, isTried ? "failed, keeping the last numbers" : "not tried"};
}

/// Hands what the user pasted to the app.
QCoro::Task<CallbackInbox::Verdict> handOver(QProcessEnvironment environment, std::string line)
{
    const std::string address = QString::fromStdString(line).trimmed().toStdString();
    if (!isCallback(address, "briskenroost")) {
        co_return CallbackInbox::Verdict::notCallback;
    }
    auto handing = handOverCallback(environment, address, patience);
    const Handover handover = co_await handing;
    co_return handover == Handover::taken ? CallbackInbox::Verdict::taken : CallbackInbox::Verdict::ignored;
}

QCoro::Task<void> offer(std::shared_ptr<SignInByHand> byHand, QProcessEnvironment environment,
                        std::string line)
{
    auto handing = handOver(environment, std::move(line));
    const CallbackInbox::Verdict verdict = co_await handing;
    byHand->tell(verdict);
}

/// Tells the terminal where the sign-in leads.
QCoro::Task<void> tellAddress(App app, std::shared_ptr<SignInByHand> byHand, bool isInteractive)
{
    auto asking = app->signInAddress();
    const std::optional<std::string> address = co_await asking;
    if (!address) {
        co_return;
    }
    if (isInteractive) {
        byHand->say("Choose a profile in your browser.\n");
        byHand->tellAddress(*address);
    } else {
        byHand->showAddress(*address);
    }
}

QCoro::Task<void> cancel(App app)
{
    auto cancelling = app->cancelSignIn();
    co_await cancelling;
}

} // namespace

QCoro::Task<CommandResult> refresh(App app, std::optional<std::string> profileId, std::stop_token stop)
{
    std::vector<Record> signedIn = app->state().accounts();
    std::erase_if(signedIn, [&](const Record& record) {
        return record.status != Record::Status::ok || (profileId && record.profileId != *profileId);
    });
    if (signedIn.empty()) {
        co_return profileId ? notSignedIn(*profileId) : nobodySignedIn();
    }
    const Arrival<std::optional<Answer>> end;
    const std::stop_callback onStop(stop, [end] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [end] { end.set(std::nullopt); }, Qt::QueuedConnection);
    });
    const auto waiting = [](App asked, Arrival<std::optional<Answer>> whenDone) -> QCoro::Task<void> {
        auto refreshing = asked->requestRefresh(true);
        const Answer answer = co_await refreshing;
        whenDone.set(answer);
    }(app, end);
    const auto coming = end.coming();
    const std::optional<Answer> answer = co_await coming;
    if (!answer) {
        co_return failed(ExitCode::failure, "Stopped waiting; the app goes on.");
    }
    // The state is told apart from the answer, and may come after it.
    auto reading = app->connectToApp();
    const bool isThere = co_await reading;
    if (*answer != Answer::done || !isThere) {
        co_return noAnswer();
    }
    CommandResult result;
    for (const Record& record : signedIn) {
        add(result, nameOf(app->state(), record.profileId),
            whatCameOf(record, app->state().account(record.profileId)));
    }
    co_return result;
}

QCoro::Task<CommandResult> signIn(App app, Terminal terminal, std::stop_token stop)
{
    if (std::holds_alternative<SignInState::InProgress>(app->state().signInState())) {
        co_return failed(ExitCode::failure, "A sign-in is running already. Finish it in the browser, or give "
                                            "it up: brisken-roost sign-in --cancel");
    }
    const auto byHand = std::make_shared<SignInByHand>(terminal.output);
    byHand->onLine(
        [weak = std::weak_ptr(byHand), environment = terminal.environment](const std::string& line) {
            if (const auto alive = weak.lock()) {
                offer(alive, environment, line);
            }
        });
    const std::stop_callback onStop(stop, [app] {
        QMetaObject::invokeMethod(QCoreApplication::instance(), [app] { cancel(app); }, Qt::QueuedConnection);
    });
    auto signingIn = app->signIn();
    const auto telling = tellAddress(app, byHand, terminal.isInteractive);
    const auto profileId = co_await signingIn;
    co_await telling;
    auto reading = app->connectToApp();
    const bool isThere = co_await reading;
    if (!profileId || !isThere) {
        co_return noAnswer();
    }
    if (*profileId) {
        co_return CommandResult{
            ExitCode::fine, "Signed in to " + nameOf(app->state(), **profileId) + ".\n", {}};
    }
    const auto* failure = std::get_if<SignInState::Failed>(&app->state().signInState());
    co_return failed(ExitCode::failure,
                     failure != nullptr ? failure->message : std::string("The sign-in was cancelled."));
}

QCoro::Task<CommandResult> cancelSignIn(App app)
{
    auto cancelling = app->cancelSignIn();
    const Answer answer = co_await cancelling;
    co_return answer == Answer::done ? CommandResult{} : noAnswer();
}

QCoro::Task<CommandResult> signOut(App app, std::string profileId)
{
    const std::string name = nameOf(app->state(), profileId);
    auto signingOut = app->signOut(profileId);
    const Answer answer = co_await signingOut;
    switch (answer) {
    case Answer::done:
        co_return CommandResult{ExitCode::fine,
                                "Signed out of " + name +
                                    ". Roost lists this connection until you end it there.\n",
                                {}};
    case Answer::noSuchProfile:
        co_return noSuchProfile(profileId);
    case Answer::failed:
        break;
    }
    co_return noAnswer();
}

CommandResult accounts(const AppState& state)
{
    std::vector<AccountLine> lines;
    for (const Record& record : state.accounts()) {
        const bool isSignedIn = record.status == Record::Status::ok;
        lines.push_back({record.profileId, isSignedIn ? "signed in" : "signed out", record.profileName});
    }
    return lines.empty() ? nobodySignedIn() : CommandResult{ExitCode::fine, table(lines), {}};
}

QCoro::Task<CommandResult> select(App app, std::string profileId)
{
    auto selecting = app->select(profileId);
    const Answer answer = co_await selecting;
    switch (answer) {
    case Answer::done:
        co_return CommandResult{};
    case Answer::noSuchProfile:
        co_return noSuchProfile(profileId);
    case Answer::failed:
        break;
    }
    co_return noAnswer();
}

} // namespace roost::AppCommands
