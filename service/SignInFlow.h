#pragma once

#include "model/Pause.h"
#include "service/AuthFailure.h"
#include "service/OAuthClient.h"
#include "service/TokenSet.h"
#include "service/WebAuthenticating.h"
#include "service/WidgetAPI.h"

#include <QCoro/QCoroTask>

#include <stop_token>

namespace roost {

/// Signs a profile in: authorization request, browser, callback, tokens, first snapshot. Stores nothing but
/// the client id; what comes of it is the caller's. Main thread; outlives its tasks, and so does all that it
/// is made of.
class SignInFlow {
public:
    struct Result {
        TokenSet tokens;
        /// Tells also which profile the tokens belong to.
        RoostSnapshot snapshot;
    };

    SignInFlow(OAuthClient oauth, WidgetAPI api, WebAuthenticating& web,
               PKCE::RandomBytes randomBytes = PKCE::systemRandom, Pause pause = pauseOnEventLoop);

    /// Fails as the step fails that failed; `invalidGrant` when the new tokens may read nothing,
    /// `unreachable` when no first snapshot came in three attempts, two seconds apart: the service may need a
    /// moment to prepare it.
    QCoro::Task<AuthResult<Result>> run(std::stop_token stop) const;

private:
    QCoro::Task<AuthResult<RoostSnapshot>> firstSnapshot(std::string accessToken, std::stop_token stop) const;

    OAuthClient oauth_;
    WidgetAPI api_;
    WebAuthenticating* web_;
    PKCE::RandomBytes randomBytes_;
    Pause pause_;
};

} // namespace roost
