#include "present/BrandMarkShape.h"

#include <algorithm>

namespace roost {

VectorPath BrandMarkShape::path(const PathRect& rect, BrandMarkCache& cache) const
{
    const VectorPath* const mark = cache.path(platform);
    if (mark == nullptr) {
        return {};
    }
    constexpr double units = 24;
    const double side = std::min(rect.width, rect.height);
    const PathPoint middle{rect.x + rect.width / 2, rect.y + rect.height / 2};
    return mark->placed(side / units, middle - PathPoint{side / 2, side / 2});
}

} // namespace roost
