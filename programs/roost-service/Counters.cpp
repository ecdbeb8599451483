#include "programs/roost-service/Counters.h"

#include "programs/roost-service/Redaction.h"

#include <algorithm>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

QString textOf(Endpoint endpoint) { return QString::fromUtf8(nameOf(endpoint)); }

} // namespace

void Counters::arrived(Endpoint endpoint, const std::optional<std::string>& profile, const Request& request)
{
    ++byEndpoint_[endpoint];
    if (profile) {
        ++byProfile_[{*profile, endpoint}];
    }
    last_[endpoint] = describe(request);
}

std::shared_ptr<void> Counters::tokenRequestUnderWay(const std::string& grant)
{
    std::shared_ptr<UnderWay>& ofGrant = byGrant_[grant];
    if (!ofGrant) {
        ofGrant = std::make_shared<UnderWay>();
    }
    ofGrant->most = std::max(ofGrant->most, ++ofGrant->now);
    return {ofGrant.get(), [kept = ofGrant](void*) { --kept->now; }};
}

int Counters::requests(Endpoint endpoint) const
{
    const auto found = byEndpoint_.find(endpoint);
    return found == byEndpoint_.end() ? 0 : found->second;
}

int Counters::requests(Endpoint endpoint, const std::string& profile) const
{
    const auto found = byProfile_.find({profile, endpoint});
    return found == byProfile_.end() ? 0 : found->second;
}

int Counters::mostTokenRequestsAtOnce() const
{
    int most = 0;
    for (const auto& [grant, underWay] : byGrant_) {
        most = std::max(most, underWay->most);
    }
    return most;
}

QJsonObject Counters::toJson() const
{
    QJsonObject requests;
    for (const auto& [endpoint, count] : byEndpoint_) {
        requests.insert(textOf(endpoint), count);
    }
    QJsonObject last;
    for (const auto& [endpoint, request] : last_) {
        last.insert(textOf(endpoint), request);
    }
    return {{u"requests"_s, requests},
            {u"last"_s, last},
            {u"mostTokenRequestsAtOnce"_s, mostTokenRequestsAtOnce()},
            {u"refreshTokenReuses"_s, reuses_}};
}

QJsonObject Counters::toJson(const std::string& profile) const
{
    QJsonObject requests;
    for (const auto& [key, count] : byProfile_) {
        if (key.first == profile) {
            requests.insert(textOf(key.second), count);
        }
    }
    return requests;
}

} // namespace roost::local
