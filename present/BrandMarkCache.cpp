#include "present/BrandMarkCache.h"

#include "present/BrandMarkData.h"
#include "present/SVGPath.h"

namespace roost {

const VectorPath* BrandMarkCache::path(std::string_view platform)
{
    const std::scoped_lock locked{lock_};
    if (const auto known = parsed_.find(platform); known != parsed_.end()) {
        return &known->second;
    }
    const auto data = BrandMarkData::find(platform);
    if (!data) {
        return nullptr;
    }
    return &parsed_.emplace(platform, SVGPath::Parser{*data}.run()).first->second;
}

} // namespace roost
