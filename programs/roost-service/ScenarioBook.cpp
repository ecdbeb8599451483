#include "programs/roost-service/ScenarioBook.h"

namespace roost::local {

void ScenarioBook::set(const std::string& profile, Endpoint endpoint, std::optional<Scenario> scenario)
{
    if (scenario) {
        scenarios_.insert_or_assign({profile, endpoint}, *std::move(scenario));
    } else {
        scenarios_.erase({profile, endpoint});
    }
}

std::optional<Scenario> ScenarioBook::take(const std::optional<std::string>& profile, Endpoint endpoint)
{
    auto found = profile ? scenarios_.find({*profile, endpoint}) : scenarios_.end();
    if (found == scenarios_.end()) {
        found = scenarios_.find({everyone, endpoint});
    }
    if (found == scenarios_.end()) {
        return std::nullopt;
    }
    Scenario scenario = found->second;
    if (found->second.times && --*found->second.times == 0) {
        scenarios_.erase(found);
    }
    return scenario;
}

QJsonObject ScenarioBook::toJson() const
{
    QJsonObject byProfile;
    for (const auto& [key, scenario] : scenarios_) {
        const QString profile = QString::fromStdString(key.first);
        const QString endpoint = QString::fromUtf8(nameOf(key.second));
        QJsonObject ofProfile = byProfile.value(profile).toObject();
        ofProfile.insert(endpoint, local::toJson(scenario));
        byProfile.insert(profile, ofProfile);
    }
    return byProfile;
}

} // namespace roost::local
