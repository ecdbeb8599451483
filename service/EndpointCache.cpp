#include "service/EndpointCache.h"

namespace roost {

namespace {

constexpr std::chrono::seconds lifetime{3600};

} // namespace

std::optional<OAuthEndpoints> EndpointCache::value(Date now) const
{
    if (!stored_ || now - stored_->second >= lifetime) {
        return std::nullopt;
    }
    return stored_->first;
}

void EndpointCache::store(OAuthEndpoints endpoints, Date now) { stored_.emplace(std::move(endpoints), now); }

} // namespace roost
