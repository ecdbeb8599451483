#include "tests/support/ModelOAuthServer.h"

#include <QUrlQuery>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace roost::test {

namespace {

HttpResult response(int status, const std::string& body)
{
    return HttpResponse{.status = status, .headers = {}, .body = QByteArray::fromStdString(body)};
}

HttpResult refusal(int status, const std::string& code)
{
    return response(status, R"({"error":")" + code + R"("})");
}

std::string named(const char* kind, std::size_t grant, std::size_t serial)
{
    return std::string(kind) + "-" + std::to_string(grant) + "-" + std::to_string(serial);
}

} // namespace

ModelOAuthServer::ModelOAuthServer(ShuffledTurns& turns, Clock now) : turns_(&turns), now_(std::move(now)) {}

QUrl ModelOAuthServer::baseURL() { return QUrl(QStringLiteral("https://roost.test")); }

std::string ModelOAuthServer::clientKey() { return "client-id|https://roost.test"; }

TokenSet ModelOAuthServer::signIn()
{
    grants_.emplace_back();
    return tokensOf(newestGrant());
}

void ModelOAuthServer::revoke() { grants_.back().isRevoked = true; }

std::string ModelOAuthServer::liveToken(std::size_t grant) const { return tokensOf(grant).refreshToken; }

TokenSet ModelOAuthServer::tokensOf(std::size_t grant) const
{
    const std::size_t serial = grants_.at(grant).serial;
    return {.accessToken = named("access", grant, serial),
            .refreshToken = named("refresh", grant, serial),
            .expiresAt = now_() + lifetime,
            .scope = {}};
}

QCoro::Task<HttpResult> ModelOAuthServer::answer(HttpRequest request, std::stop_token stop)
{
    const bool isTokenRequest = request.url.path() == QLatin1String("/token");
    inFlight_ += isTokenRequest ? 1 : 0;
    mostInFlight_ = std::max(mostInFlight_, inFlight_);
    const ShuffledTurns::Turn arrival = turns_->turn();
    co_await arrival;
    HttpResult result = isTokenRequest ? refreshed(request.body) : document(request.url.path());
    const ShuffledTurns::Turn wayBack = turns_->turn();
    co_await wayBack;
    inFlight_ -= isTokenRequest ? 1 : 0;
    if (stop.stop_requested()) {
        result = std::unexpected(HttpFailure{HttpFailure::Kind::cancelled, -999});
    }
    co_return result;
}

HttpResult ModelOAuthServer::document(const QString& path) const
{
    if (path == QLatin1String("/register")) {
        return response(201, R"({"client_id":"another client"})");
    }
    if (!path.endsWith(QLatin1String("oauth-authorization-server"))) {
        return response(404, "");
    }
    return response(200, R"({"issuer":"https://roost.test",
        "authorization_endpoint":"https://roost.test/authorize",
        "token_endpoint":"https://roost.test/token",
        "registration_endpoint":"https://roost.test/register",
        "code_challenge_methods_supported":["S256"]})");
}

HttpResult ModelOAuthServer::refreshed(const QByteArray& form)
{
    const QUrlQuery values(QString::fromUtf8(form));
    const auto value = [&values](const QString& name) {
        return values.queryItemValue(name, QUrl::FullyDecoded).toStdString();
    };
    const std::string refreshToken = value(QStringLiteral("refresh_token"));
    tokenRequests_.push_back(refreshToken);
    switch (trouble) {
    case Trouble::none:
        break;
    case Trouble::unreachable:
        return std::unexpected(HttpFailure{HttpFailure::Kind::transport, -1001});
    case Trouble::status500:
        return response(500, "<h1>no</h1>");
    case Trouble::malformed:
        return response(200, "{}");
    case Trouble::invalidClient:
        return refusal(401, "invalid_client");
    }
    std::size_t grant = 0;
    std::size_t serial = 0;
    if (value(QStringLiteral("client_id")) != clientID ||
        std::sscanf(refreshToken.c_str(), "refresh-%zu-%zu", &grant, &serial) != 2 ||
        grant >= grants_.size()) {
        return refusal(400, "invalid_grant");
    }
    Grant& found = grants_[grant];
    if (serial != found.serial) {
        ++reuses_;
        found.isRevoked = true;
    }
    if (found.isRevoked) {
        return refusal(400, "invalid_grant");
    }
    ++found.serial;
    const TokenSet tokens = tokensOf(grant);
    return response(200, R"({"token_type":"Bearer","expires_in":300,"access_token":")" + tokens.accessToken +
                             R"(","refresh_token":")" + tokens.refreshToken + R"("})");
}

} // namespace roost::test
