#include "tests/support/ModelRoost.h"

#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"

#include <QUrlQuery>

#include <algorithm>

namespace roost::test {

namespace {

std::string valueIn(const QByteArray& form, const QString& name)
{
    return QUrlQuery(QString::fromUtf8(form)).queryItemValue(name, QUrl::FullyDecoded).toStdString();
}

std::string bearerOf(const HttpRequest& request)
{
    for (const auto& [name, value] : request.headers) {
        if (name == "Authorization") {
            return value.mid(7).toStdString();
        }
    }
    return "";
}

HttpResult refusal(const std::string& error) { return response(400, R"({"error":")" + error + R"("})"); }

std::string refreshToken(std::size_t grant, int serial)
{
    return "refresh-" + std::to_string(grant) + "-" + std::to_string(serial);
}

} // namespace

HttpResult response(int status, const std::string& body)
{
    return HttpResponse{status, {}, QByteArray::fromStdString(body)};
}

HttpResult noNetwork() { return std::unexpected(HttpFailure{HttpFailure::Kind::transport, -1009}); }

RoostSnapshot numbersOf(const std::string& profileId, Date now)
{
    using namespace std::chrono_literals;
    RoostSnapshot numbers;
    numbers.generatedAt = now;
    numbers.profile = {.id = profileId, .name = "Profile " + profileId, .avatarUrl = std::nullopt};
    numbers.views = {
        .days = 7, .total = 700, .previous = 500, .basis = RoostSnapshot::Views::Basis::growth, .series = {}};
    numbers.posts = {.published7 = 3, .scheduled = 2, .failed = 0, .next = {}};
    numbers.posts.next = {{"a", now + 10min, "the first", {"x"}}, {"b", now + 3h, "the second", {}}};
    numbers.best = RoostSnapshot::BestPost{"x", "X", 900, "the best", std::nullopt};
    numbers.followers = RoostSnapshot::Followers{.total = 100, .series = {}, .networks = {}};
    return numbers;
}

ModelRoost::ModelRoost(VirtualTime& time)
    : time_(&time),
      session_([this](HttpRequest request, std::stop_token stop) {
          return answer(std::move(request), std::move(stop));
      })
{
}

void ModelRoost::revoke(const std::string& profileId)
{
    for (Grant& grant : grants_) {
        grant.isRevoked = grant.isRevoked || grant.profileId == profileId;
    }
}

void ModelRoost::expire(const std::string& profileId)
{
    std::erase_if(accessTokens_,
                  [&](const auto& entry) { return grants_[entry.second.first].profileId == profileId; });
}

bool ModelRoost::isAlive(const std::string& token) const
{
    for (std::size_t i = 0; i < grants_.size(); ++i) {
        if (!grants_[i].isRevoked && refreshToken(i, grants_[i].serial) == token) {
            return true;
        }
    }
    return false;
}

bool ModelRoost::isUsedUp(const std::string& token) const
{
    std::size_t grant = 0;
    int serial = 0;
    return std::sscanf(token.c_str(), "refresh-%zu-%d", &grant, &serial) == 2 && grant < grants_.size() &&
           !grants_[grant].isRevoked && serial < grants_[grant].serial;
}

std::optional<std::string> ModelRoost::profileOf(const HttpRequest& request) const
{
    const std::string token = valueIn(request.body, QStringLiteral("refresh_token")) + bearerOf(request);
    std::size_t grant = 0;
    const bool isKnown = (std::sscanf(token.c_str(), "refresh-%zu-", &grant) == 1 ||
                          std::sscanf(token.c_str(), "access-%zu-", &grant) == 1) &&
                         grant < grants_.size();
    return isKnown ? std::optional{grants_[grant].profileId} : std::nullopt;
}

std::string ModelRoost::grant(const std::string& profileId)
{
    grants_.push_back({profileId});
    return refreshToken(grants_.size() - 1, 0);
}

std::size_t ModelRoost::count(const std::string& request) const
{
    return static_cast<std::size_t>(std::ranges::count(requests_, request));
}

QCoro::Task<HttpResult> ModelRoost::answer(HttpRequest request, std::stop_token stop)
{
    auto travelling = time_->pause()(latency() / 2, stop);
    co_await travelling;
    HttpResult result = onAnswer(request, answerNow(request));
    auto comingBack = time_->pause()(latency() / 2, stop);
    co_await comingBack;
    co_return result;
}

HttpResult ModelRoost::answerNow(const HttpRequest& request)
{
    const std::string path = request.url.path().toStdString();
    const bool isWidget = path == "/api/roost/v1/widget";
    if (!isWidget) {
        requests_.push_back(path);
    }
    if (trouble) {
        if (std::optional<HttpResult> result = trouble(request)) {
            if (isWidget) {
                requests_.emplace_back("widget");
            }
            return *std::move(result);
        }
    }
    if (path == "/token") {
        return token(request);
    }
    if (isWidget) {
        return widget(request);
    }
    if (path == "/register") {
        return response(201, R"({"client_id":"client"})");
    }
    if (path.ends_with("oauth-authorization-server")) {
        return response(200, R"({"issuer":"https://roost.test",
            "authorization_endpoint":"https://roost.test/authorize",
            "token_endpoint":"https://roost.test/token",
            "registration_endpoint":"https://roost.test/register",
            "code_challenge_methods_supported":["S256"]})");
    }
    return response(404);
}

HttpResult ModelRoost::token(const HttpRequest& request)
{
    if (valueIn(request.body, QStringLiteral("grant_type")) == "authorization_code") {
        // The code names the profile.
        grants_.push_back({valueIn(request.body, QStringLiteral("code"))});
        return tokensOf(grants_.size() - 1);
    }
    std::size_t grant = 0;
    int serial = 0;
    const std::string given = valueIn(request.body, QStringLiteral("refresh_token"));
    if (std::sscanf(given.c_str(), "refresh-%zu-%d", &grant, &serial) != 2 || grant >= grants_.size()) {
        return refusal("invalid_grant");
    }
    Grant& found = grants_[grant];
    if (serial != found.serial && !found.isRevoked) {
        reused_.push_back(given);
        found.isRevoked = true;
    }
    if (found.isRevoked) {
        return refusal("invalid_grant");
    }
    ++found.serial;
    return tokensOf(grant);
}

HttpResult ModelRoost::tokensOf(std::size_t grant)
{
    const std::string access =
        "access-" + std::to_string(grant) + "-" + std::to_string(grants_[grant].serial);
    accessTokens_[access] = {grant, time_->bootTime()() + tokenLifetime};
    return response(200, R"({"token_type":"Bearer","expires_in":3600,"access_token":")" + access +
                             R"(","refresh_token":")" + refreshToken(grant, grants_[grant].serial) + R"("})");
}

HttpResult ModelRoost::widget(const HttpRequest& request)
{
    const auto found = accessTokens_.find(bearerOf(request));
    const bool isGood = found != accessTokens_.end() && found->second.second > time_->bootTime()() &&
                        !grants_[found->second.first].isRevoked;
    if (!isGood) {
        requests_.emplace_back("widget");
        return response(401);
    }
    const std::string& profileId = grants_[found->second.first].profileId;
    requests_.push_back("widget " + profileId);
    const auto profile = profiles.find(profileId);
    if (profile == profiles.end()) {
        return response(403);
    }
    profile->second.generatedAt = time_->now();
    onRead(profile->second);
    return response(200, RoostJSON::encoder().encode(profile->second));
}

QCoro::Task<std::expected<std::string, RoostAuthError>>
ModelRoost::Browser::authenticate(WebURL url, QString, std::stop_token stop)
{
    ++opened;
    auto waiting = roost_->time_->pause()(hesitation, stop);
    co_await waiting;
    if (!profileOfNextSignIn || stop.stop_requested()) {
        co_return std::unexpected(RoostAuthError{RoostAuthError::Kind::cancelled, 0, {}});
    }
    const QUrlQuery query{url.url()};
    co_return "briskenroost://oauth/callback?code=" + *profileOfNextSignIn +
        "&state=" + query.queryItemValue(QStringLiteral("state")).toStdString() + wrongState;
}

} // namespace roost::test
