#include "service/OAuthClient.h"

#include "model/RoostLog.h"
#include "model/WebURL.h"
#include "service/OAuthRequests.h"

#include <optional>

namespace roost {

namespace {

using Kind = RoostAuthError::Kind;

constexpr std::size_t verifierBytes = 32;
constexpr std::size_t stateBytes = 16;

AuthFailure failureOf(const HttpFailure& failure, const QUrl& url)
{
    switch (failure.kind) {
    case HttpFailure::Kind::cancelled:
        return Stopped{};
    case HttpFailure::Kind::notHttp:
        return RoostAuthError{Kind::malformedResponse, 0, {}};
    case HttpFailure::Kind::transport:
    case HttpFailure::Kind::bodyTooLarge:
        break;
    }
    qCCritical(RoostLog::auth, "request to %s failed: %d", qPrintable(url.host()), failure.code);
    return RoostAuthError{
        failure.kind == HttpFailure::Kind::transport ? Kind::unreachable : Kind::malformedResponse, 0, {}};
}

template <class T>
AuthResult<T> asResult(OAuthAnswers::Meaning<T> meaning)
{
    if (!meaning) {
        return std::unexpected(AuthFailure{std::move(meaning.error())});
    }
    return *std::move(meaning);
}

} // namespace

OAuthClient::OAuthClient(QUrl baseURL, HttpSession& session, SecretStore& secrets, Clock now)
    : baseURL_(std::move(baseURL)),
      session_(&session),
      now_(std::move(now)),
      cache_(std::make_shared<EndpointCache>()),
      clientIDs_(std::make_shared<ClientIDStore>(secrets))
{
}

QCoro::Task<AuthResult<OAuthAnswers::Answer>> OAuthClient::send(HttpRequest request,
                                                                std::stop_token stop) const
{
    const QUrl url = request.url;
    auto sending = session_->send(std::move(request), std::move(stop));
    HttpResult result = co_await sending;
    if (!result) {
        co_return std::unexpected(failureOf(result.error(), url));
    }
    co_return OAuthAnswers::Answer{result->status, result->body.toStdString()};
}

QCoro::Task<AuthResult<OAuthEndpoints>> OAuthClient::endpoints(Discovery discovery,
                                                               std::stop_token stop) const
{
    if (discovery == Discovery::cached) {
        if (auto known = cache_->value(now_())) {
            co_return *std::move(known);
        }
    }
    const auto documentAt = [this](QStringView path) {
        return OAuthRequests::document(appendingPath(baseURL_, path));
    };
    auto asking = send(documentAt(u".well-known/oauth-authorization-server"), stop);
    const auto metadata = co_await asking;
    if (!metadata) {
        co_return std::unexpected(metadata.error());
    }
    auto found = asResult(OAuthAnswers::endpoints(*metadata, baseURL_));
    if (!found) {
        co_return found;
    }
    auto askingForResource = send(documentAt(u".well-known/oauth-protected-resource"), stop);
    const auto resourceMetadata = co_await askingForResource;
    if (!resourceMetadata && std::holds_alternative<Stopped>(resourceMetadata.error())) {
        co_return std::unexpected(resourceMetadata.error());
    }
    // The document is optional: without it the default stays.
    const std::string resource = resourceMetadata ? OAuthAnswers::resource(*resourceMetadata) : "";
    if (!resource.empty()) {
        found->resource = resource;
    }
    cache_->store(*found, now_());
    co_return found;
}

QCoro::Task<AuthResult<std::string>> OAuthClient::clientID(OAuthEndpoints endpoints,
                                                           std::stop_token stop) const
{
    auto finding = clientIDs_->find(endpoints.issuer);
    const auto stored = co_await finding;
    if (!stored) {
        co_return std::unexpected(stored.error());
    }
    if (stored->has_value()) {
        co_return **stored;
    }
    auto registering = registered(std::move(endpoints), std::move(stop));
    co_return co_await registering;
}

QCoro::Task<AuthResult<std::string>> OAuthClient::registered(OAuthEndpoints endpoints,
                                                             std::stop_token stop) const
{
    auto registering = send(OAuthRequests::registration(endpoints), std::move(stop));
    const auto answer = co_await registering;
    if (!answer) {
        co_return std::unexpected(answer.error());
    }
    auto id = asResult(OAuthAnswers::registeredClient(*answer));
    if (id) {
        auto keeping = clientIDs_->keep(endpoints.issuer, *id);
        co_await keeping;
    }
    co_return id;
}

QCoro::Task<bool> OAuthClient::clientIsKnown(std::string clientID, OAuthEndpoints endpoints,
                                             std::stop_token stop) const
{
    constexpr int unauthorized = 401;
    auto probing = send(OAuthRequests::refresh("probe", clientID, endpoints), std::move(stop));
    const auto answer = co_await probing;
    co_return !answer || answer->status != unauthorized ||
        OAuthAnswers::oauthError(*answer).kind != Kind::invalidClient;
}

QCoro::Task<AuthResult<AuthorizationRequest>> OAuthClient::authorizationRequest(PKCE::RandomBytes randomBytes,
                                                                                std::stop_token stop) const
{
    auto discovering = endpoints(Discovery::cached, stop);
    const auto found = co_await discovering;
    if (!found) {
        co_return std::unexpected(found.error());
    }
    auto finding = clientIDs_->find(found->issuer);
    auto stored = co_await finding;
    if (!stored && stored.error().why != SecretsUnavailable::Why::noService) {
        co_return std::unexpected(stored.error());
    }
    std::optional<std::string> id = stored ? *stored : std::nullopt;
    if (id) {
        auto probing = clientIsKnown(*id, *found, stop);
        if (!co_await probing) {
            auto forgetting = clientIDs_->forget(found->issuer);
            co_await forgetting;
            id.reset();
        }
    }
    if (!id) {
        auto registering = registered(*found, stop);
        auto fresh = co_await registering;
        if (!fresh) {
            co_return std::unexpected(fresh.error());
        }
        id = *std::move(fresh);
    }
    const std::string verifier = PKCE::base64URL(randomBytes(verifierBytes));
    const std::string state = PKCE::base64URL(randomBytes(stateBytes));
    co_return asResult(OAuthRequests::authorization(*found, *std::move(id), verifier, state));
}

QCoro::Task<bool> OAuthClient::storeClientIDs() const { return clientIDs_->storeAgain(); }

QCoro::Task<AuthResult<TokenSet>> OAuthClient::exchange(std::string code, AuthorizationRequest request,
                                                        std::stop_token stop) const
{
    auto asking = tokens(OAuthRequests::exchange(code, request), std::move(stop));
    co_return co_await asking;
}

QCoro::Task<AuthResult<TokenSet>> OAuthClient::refresh(std::string refreshToken, std::stop_token stop) const
{
    auto discovering = endpoints(Discovery::cached, stop);
    const auto found = co_await discovering;
    if (!found) {
        co_return std::unexpected(found.error());
    }
    auto identifying = clientID(*found, stop);
    const auto id = co_await identifying;
    if (!id) {
        co_return std::unexpected(id.error());
    }
    if (stop.stop_requested()) {
        co_return std::unexpected(Stopped{});
    }
    // No stop from here on: the answer brings the only token that is good afterwards.
    auto asking = tokens(OAuthRequests::refresh(refreshToken, *id, *found), {});
    auto next = co_await asking;
    if (!next && isAuthError(next.error(), Kind::invalidClient)) {
        auto forgetting = clientIDs_->forget(found->issuer);
        co_await forgetting;
    }
    co_return next;
}

QCoro::Task<AuthResult<TokenSet>> OAuthClient::tokens(HttpRequest request, std::stop_token stop) const
{
    auto asking = send(std::move(request), std::move(stop));
    const auto answer = co_await asking;
    if (!answer) {
        co_return std::unexpected(answer.error());
    }
    co_return asResult(OAuthAnswers::tokens(*answer, now_()));
}

} // namespace roost
