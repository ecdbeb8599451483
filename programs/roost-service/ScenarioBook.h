#pragma once

#include "programs/roost-service/Endpoint.h"
#include "programs/roost-service/Scenario.h"

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace roost::local {

/// Which scenario applies to which requests. A plain value; main thread.
class ScenarioBook {
public:
    /// Stands for every profile, and for requests that belong to none.
    static constexpr const char* everyone = "*";

    /// Replaces the scenario of that profile and endpoint; nothing ends it.
    void set(const std::string& profile, Endpoint endpoint, std::optional<Scenario> scenario);

    /// The scenario that this request meets, counted down by it: that of its own profile, otherwise that of
    /// everyone.
    std::optional<Scenario> take(const std::optional<std::string>& profile, Endpoint endpoint);

    void clear() { scenarios_.clear(); }

    /// The scenarios in force by profile and endpoint.
    QJsonObject toJson() const;

private:
    std::map<std::pair<std::string, Endpoint>, Scenario> scenarios_;
};

} // namespace roost::local
