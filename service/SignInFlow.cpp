#include "service/SignInFlow.h"

namespace roost {

namespace {

using Kind = RoostAuthError::Kind;

const QString callbackScheme = QStringLiteral("briskenroost");
constexpr int attempts = 3;
constexpr std::chrono::duration<double> betweenAttempts{2.0};

} // namespace

SignInFlow::SignInFlow(OAuthClient oauth, WidgetAPI api, WebAuthenticating& web,
                       PKCE::RandomBytes randomBytes, Pause pause)
    : oauth_(std::move(oauth)),
      api_(std::move(api)),
      web_(&web),
      randomBytes_(std::move(randomBytes)),
      pause_(std::move(pause))
{
}

QCoro::Task<AuthResult<SignInFlow::Result>> SignInFlow::run(std::stop_token stop) const
{
    auto preparing = oauth_.authorizationRequest(randomBytes_, stop);
    const auto request = co_await preparing;
    if (!request) {
        co_return std::unexpected(request.error());
    }
    auto authenticating = web_->authenticate(request->url, callbackScheme, stop);
    const auto callback = co_await authenticating;
    if (!callback) {
        co_return std::unexpected(callback.error());
    }
    const auto code = authorizationCode(*callback, *request);
    if (!code) {
        co_return std::unexpected(code.error());
    }
    auto exchanging = oauth_.exchange(*code, *request, stop);
    const auto tokens = co_await exchanging;
    if (!tokens) {
        co_return std::unexpected(tokens.error());
    }
    auto fetching = firstSnapshot(tokens->accessToken, stop);
    const auto snapshot = co_await fetching;
    if (!snapshot) {
        co_return std::unexpected(snapshot.error());
    }
    co_return Result{*tokens, *snapshot};
}

QCoro::Task<AuthResult<RoostSnapshot>> SignInFlow::firstSnapshot(std::string accessToken,
                                                                 std::stop_token stop) const
{
    for (int attempt = 1;; ++attempt) {
        auto fetching = api_.fetch(QString::fromStdString(accessToken), stop);
        WidgetAPI::Result result = co_await fetching;
        if (stop.stop_requested()) {
            co_return std::unexpected(Stopped{});
        }
        if (auto* fresh = std::get_if<WidgetAPI::Snapshot>(&result)) {
            co_return std::move(fresh->snapshot);
        }
        if (std::holds_alternative<WidgetAPI::Unauthorized>(result) ||
            std::holds_alternative<WidgetAPI::Forbidden>(result)) {
            co_return std::unexpected(RoostAuthError{Kind::invalidGrant, 0, {}});
        }
        if (attempt == attempts) {
            co_return std::unexpected(RoostAuthError{Kind::unreachable, 0, {}});
        }
        auto pausing = pause_(betweenAttempts, stop);
        co_await pausing;
    }
}

} // namespace roost
