#pragma once

#include "model/Date.h"
#include "service/OAuthEndpoints.h"

#include <optional>
#include <utility>

namespace roost {

/// Remembers what discovery found for an hour. Shared by every profile; main thread.
class EndpointCache {
public:
    /// What was stored less than 3600 seconds before `now`; also when the clock went backwards since.
    std::optional<OAuthEndpoints> value(Date now) const;

    void store(OAuthEndpoints endpoints, Date now);

private:
    std::optional<std::pair<OAuthEndpoints, Date>> stored_;
};

} // namespace roost
