#include "tests/service/SessionWorld.h"

#include <stdexcept>

namespace roost::test {

SessionWorld::SessionWorld(std::uint64_t seed)
    : turns(seed),
      secrets(turns),
      lock(turns),
      server(turns, [this] { return now; }),
      http([this](HttpRequest request, std::stop_token stop) {
          return request.url.path() == QLatin1String("/api/roost/v1/widget")
                     ? widgetAnswer(std::move(request))
                     : server.answer(std::move(request), std::move(stop));
      }),
      oauth(ModelOAuthServer::baseURL(), http, secrets, [this] { return now; })
{
    secrets.items[ModelOAuthServer::clientKey()] = ModelOAuthServer::clientID;
}

std::shared_ptr<AccountSession> SessionWorld::makeSession()
{
    return std::make_shared<AccountSession>("p1", oauth, secrets, lock, [this] { return now; });
}

std::shared_ptr<AccountSession> SessionWorld::signedIn()
{
    auto session = makeSession();
    if (!ended(session->adopt(server.signIn()))) {
        throw std::logic_error("the store must take the first tokens");
    }
    return session;
}

std::string SessionWorld::stored() const
{
    const auto found = secrets.items.find(key);
    return found == secrets.items.end() ? std::string() : found->second;
}

QCoro::Task<HttpResult> SessionWorld::widgetAnswer(HttpRequest request)
{
    for (const auto& [name, value] : request.headers) {
        if (name == "Authorization") {
            widgetRequests.push_back(value.toStdString());
        }
    }
    const ShuffledTurns::Turn turn = turns.turn();
    co_await turn;
    if (widgetAnswers.empty()) {
        co_return std::unexpected(HttpFailure{HttpFailure::Kind::transport, -1005});
    }
    HttpResult answer = std::move(widgetAnswers.front());
    widgetAnswers.pop_front();
    co_return answer;
}

bool failedAs(const AuthResult<std::string>& result, RoostAuthError::Kind kind)
{
    return !result && isAuthError(result.error(), kind);
}

} // namespace roost::test
