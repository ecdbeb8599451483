#include "app/SignIn.h"

#include "model/RoostLog.h"
#include "present/RoostL10n.h"
#include "service/Completion.h"
#include "service/RefreshTokenKeeper.h"

#include <utility>

namespace roost {

namespace {

/// Gives the result of `task` to whoever waits for `end`, be it nobody any more.
QCoro::Task<void> passOn(QCoro::Task<bool> task, Completion<bool> end)
{
    const bool result = co_await task;
    end.complete(result);
}

} // namespace

SignIn::SignIn(AppState& state, Accounts& accounts, Parts parts)
    : state_{&state},
      accounts_{&accounts},
      parts_{std::move(parts)}
{
}

QCoro::Task<std::optional<std::string>> SignIn::run()
{
    if (std::holds_alternative<SignInState::InProgress>(state_->signInState())) {
        co_return std::nullopt;
    }
    givingUp_ = std::stop_source{};
    parts_.browser.begin();
    state_->setSignInState(SignInState::InProgress{});
    qCInfo(RoostLog::auth, "sign-in started");
    auto attempting = attempt();
    std::optional<std::string> profileId = co_await attempting;
    parts_.browser.end();
    co_return profileId;
}

QCoro::Task<std::optional<std::string>> SignIn::attempt()
{
    auto opening = openStore(givingUp_.get_token());
    co_await opening;
    auto flowing = parts_.flow.run(givingUp_.get_token());
    auto result = co_await flowing;
    if (!result) {
        fail(result.error());
        co_return std::nullopt;
    }
    // Worth nothing without the client id that it was made for.
    auto storing = parts_.oauth.storeClientIDs();
    co_await storing;
    const std::string profileId = result->snapshot.profile.id;
    auto adopting = accounts_->adopt(profileId, std::move(result->tokens));
    co_await adopting;
    if (!accounts_->session(profileId)) {
        // The user signed the profile out again while its token was being stored.
        endCancelled();
        co_return std::nullopt;
    }
    accounts_->welcome(std::move(result->snapshot));
    co_return std::optional{profileId};
}

std::string SignIn::message(const AuthFailure& failure, const std::string& locale)
{
    const std::string sentence = messageFor(failure);
    return sentence.empty() ? sentence : RoostL10n::bundle(locale).text(sentence);
}

/// The user is here and wants to sign in: the moment to ask for what keeps the sign-in. A store that stays
/// closed keeps nobody out; the sign-in then lasts as long as the program. The user may think about it for
/// minutes; a program that quits leaves the question behind.
QCoro::Task<void> SignIn::openStore(std::stop_token stop)
{
    auto asking = parts_.secrets.keys(std::string{refreshTokenPrefix});
    const auto keys = co_await asking;
    if (!keys && keys.error().why != SecretsUnavailable::Why::notAnswering) {
        const Completion<bool> answered;
        passOn(parts_.secrets.unlock(), answered);
        auto waiting = answered.wait(std::move(stop));
        co_await waiting;
    }
}

void SignIn::fail(const AuthFailure& failure)
{
    const std::string sentence = message(failure, parts_.locale());
    if (sentence.empty()) {
        endCancelled();
        return;
    }
    qCCritical(RoostLog::auth, "sign-in failed: %s", describe(failure).c_str());
    state_->setSignInState(SignInState::Failed{sentence});
}

void SignIn::endCancelled()
{
    qCInfo(RoostLog::auth, "sign-in cancelled");
    state_->setSignInState(SignInState::Idle{});
}

} // namespace roost
