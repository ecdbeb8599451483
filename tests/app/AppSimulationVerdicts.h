#pragma once

#include "service/HttpSession.h"
#include "tests/app/AppSimulationWorld.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace roost::test {

/// Listens to what the service and the keyring answer, for what ends a sign-in: a refused refresh token or
/// client, a refresh token that is not there, a profile that is forbidden, two access tokens refused in a
/// row.
class Verdicts {
public:
    explicit Verdicts(SimulatedWorld& world);

    /// The service answered. What it said about an earlier sign-in counts no longer when there is a new one.
    void hear(const HttpRequest& request, const HttpResult& result);

    bool isSpoken(const std::string& profileId) const { return spoken_.contains(profileId); }
    /// How often the numbers of each profile were asked for since the last call.
    std::map<std::string, int> takeAsked() { return std::exchange(asked_, {}); }

private:
    void hearTokens(const HttpRequest& request, const HttpResult& result);
    void heard(const std::vector<std::string>& keys);

    SimulatedWorld* world_;
    std::set<std::string> spoken_;
    std::set<std::string> refusedOnce_;
    std::map<std::string, int> asked_;
};

} // namespace roost::test
