#include "present/VectorPath.h"

namespace roost {

std::vector<VectorPath::Element> VectorPath::elements() const
{
    std::vector<Element> all;
    all.reserve(size());
    visit([&](const auto& element) { all.emplace_back(element); });
    return all;
}

VectorPath VectorPath::placed(double scale, PathPoint origin) const
{
    VectorPath result = *this;
    for (PathPoint& point : result.points_) {
        point = origin + scale * point;
    }
    return result;
}

} // namespace roost
