#pragma once

#include "app/Accounts.h"
#include "app/SignInBrowser.h"
#include "model/AppState.h"
#include "service/OAuthClient.h"
#include "service/SecretStore.h"
#include "service/SignInFlow.h"

#include <QCoro/QCoroTask>

#include <functional>
#include <stop_token>
#include <string>

namespace roost {

/// Signs profiles in, one at a time, and publishes where that stands. Belongs to `AppModel`; main thread;
/// outlives its tasks.
class SignIn {
public:
    struct Parts {
        /// Over `browser`.
        SignInFlow flow;
        SignInBrowser& browser;
        OAuthClient oauth;
        SecretStore& secrets;
        /// The user's language.
        std::function<std::string()> locale;
    };

    SignIn(AppState& state, Accounts& accounts, Parts parts);
    SignIn(const SignIn&) = delete;
    SignIn& operator=(const SignIn&) = delete;

    /// One whole sign-in, whose end is the published state; nothing while another is running. The profile
    /// that signed in; nothing when none did, and then nothing is changed that was there. The caller selects
    /// the profile, writes the records, and has the state become idle.
    QCoro::Task<std::optional<std::string>> run();

    /// Gives the running sign-in up. Nothing without one, and when the service has allowed it already.
    void cancel() { givingUp_.request_stop(); }

    /// The sentence that users are shown, in the language of `locale`; empty for what they stopped
    /// themselves.
    static std::string message(const AuthFailure& failure, const std::string& locale);

private:
    QCoro::Task<std::optional<std::string>> attempt();
    QCoro::Task<void> openStore(std::stop_token stop);
    void fail(const AuthFailure& failure);
    void endCancelled();

    AppState* state_;
    Accounts* accounts_;
    Parts parts_;
    /// Of the latest sign-in.
    std::stop_source givingUp_;
};

} // namespace roost
