#pragma once

#include "programs/roost-service/Endpoint.h"
#include "programs/roost-service/HttpValues.h"

#include <QJsonObject>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace roost::local {

/// What a test reads afterwards: how often each endpoint was asked and for whom, what the last request looked
/// like, how many token requests of one grant were under way at once. Main thread.
class Counters {
public:
    /// Counts a request when it arrives, whatever becomes of it. `profile` is whose token came with it.
    void arrived(Endpoint endpoint, const std::optional<std::string>& profile, const Request& request);

    /// Counts a token request of that grant as under way for as long as the result is kept.
    std::shared_ptr<void> tokenRequestUnderWay(const std::string& grant);

    void refreshTokenReused() { ++reuses_; }

    int requests(Endpoint endpoint) const;
    int requests(Endpoint endpoint, const std::string& profile) const;

    /// The most token requests of any one grant that were ever under way at once.
    int mostTokenRequestsAtOnce() const;
    int refreshTokenReuses() const { return reuses_; }

    /// Back to nothing; requests that are under way are forgotten.
    void clear() { *this = Counters(); }

    /// All of it but what belongs to one profile.
    QJsonObject toJson() const;

    /// The requests of one profile by endpoint.
    QJsonObject toJson(const std::string& profile) const;

private:
    struct UnderWay {
        int now = 0;
        int most = 0;
    };

    std::map<Endpoint, int> byEndpoint_;
    std::map<std::pair<std::string, Endpoint>, int> byProfile_;
    std::map<Endpoint, QJsonObject> last_;
    /// Shared with the requests under way, which may outlive this.
    std::map<std::string, std::shared_ptr<UnderWay>> byGrant_;
    int reuses_ = 0;
};

} // namespace roost::local
