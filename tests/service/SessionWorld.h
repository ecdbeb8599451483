#pragma once

#include "service/AccountSession.h"
#include "service/InProcessHttpSession.h"
#include "service/OAuthClient.h"
#include "tests/support/Await.h"
#include "tests/support/ModelOAuthServer.h"
#include "tests/support/ScriptedRefreshLock.h"
#include "tests/support/ScriptedSecretStore.h"
#include "tests/support/ShuffledTurns.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace roost::test {

/// All that a session stands on, in memory, every await of it under one hand: a client known to the server, a
/// store, a lock, a clock, a widget endpoint.
class SessionWorld {
public:
    static constexpr const char* key = "refresh-token|p1";

    explicit SessionWorld(std::uint64_t seed = 1);
    SessionWorld(const SessionWorld&) = delete;
    SessionWorld& operator=(const SessionWorld&) = delete;

    std::shared_ptr<AccountSession> makeSession();

    /// A session whose first tokens are in the store.
    std::shared_ptr<AccountSession> signedIn();

    /// The result of `task`, for which every turn that there is is taken.
    template <class T>
    T ended(QCoro::Task<T> task)
    {
        return endOf(Pending<T>(std::move(task)));
    }

    template <class T>
    T endOf(Pending<T> pending)
    {
        turns.runToEnd();
        return pending.get();
    }

    /// The stored refresh token; empty when there is none.
    std::string stored() const;

    /// Until the access tokens that exist now have less left than they need.
    void letTokensExpire() { now += ModelOAuthServer::lifetime; }

    Date now{std::chrono::seconds(1'718'000'000)};
    ShuffledTurns turns;
    ScriptedSecretStore secrets;
    ScriptedRefreshLock lock;
    ModelOAuthServer server;
    /// What the widget endpoint answers, one after the other.
    std::deque<HttpResult> widgetAnswers;
    /// The Authorization header of each request to it.
    std::vector<std::string> widgetRequests;
    InProcessHttpSession http;
    OAuthClient oauth;

private:
    QCoro::Task<HttpResult> widgetAnswer(HttpRequest request);
};

/// Whether `result` failed as that.
bool failedAs(const AuthResult<std::string>& result, RoostAuthError::Kind kind);

template <class Failure>
bool failedAs(const AuthResult<std::string>& result)
{
    return !result && std::holds_alternative<Failure>(result.error());
}

} // namespace roost::test
