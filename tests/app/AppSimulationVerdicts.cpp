#include "tests/app/AppSimulationVerdicts.h"

#include "service/RefreshTokenKeeper.h"

#include <QUrlQuery>

#include <algorithm>

namespace roost::test {

Verdicts::Verdicts(SimulatedWorld& world) : world_{&world}
{
    world.keyring.onMissing = [this](const std::string& key) {
        if (key.starts_with(refreshTokenPrefix)) {
            spoken_.insert(key.substr(refreshTokenPrefix.size()));
        }
    };
    world.keyring.onListed = [this](const std::vector<std::string>& keys) { heard(keys); };
}

void Verdicts::heard(const std::vector<std::string>& keys)
{
    if (!world_->app) {
        return;
    }
    for (const RoostAccountRecord& record : world_->app->state().accounts()) {
        const std::string key = std::string{refreshTokenPrefix} + record.profileId;
        if (std::ranges::find(keys, key) == keys.end()) {
            spoken_.insert(record.profileId);
        }
    }
}

void Verdicts::hear(const HttpRequest& request, const HttpResult& result)
{
    if (request.method == HttpRequest::Method::post) {
        hearTokens(request, result);
        return;
    }
    const std::optional<std::string> profileId = world_->roost.profileOf(request);
    if (!profileId) {
        return;
    }
    ++asked_[*profileId];
    if (!result) {
        return;
    }
    if (result->status == 403 || (result->status == 401 && refusedOnce_.contains(*profileId))) {
        spoken_.insert(*profileId);
    }
    if (result->status == 401) {
        refusedOnce_.insert(*profileId);
    } else {
        refusedOnce_.erase(*profileId);
    }
}

void Verdicts::hearTokens(const HttpRequest& request, const HttpResult& result)
{
    const QUrlQuery form{QString::fromUtf8(request.body)};
    const std::string signedIn = form.queryItemValue(QStringLiteral("code")).toStdString();
    if (!signedIn.empty() && result && result->status == 200) {
        spoken_.erase(signedIn);
        refusedOnce_.erase(signedIn);
    }
    const std::optional<std::string> profileId = world_->roost.profileOf(request);
    if (profileId && result &&
        (result->body.contains("invalid_grant") || result->body.contains("invalid_client"))) {
        spoken_.insert(*profileId);
    }
}

} // namespace roost::test
