#pragma once

#include "present/BrandMarkCache.h"

#include <string>

namespace roost {

/// The mark of a platform, fitted into whatever room there is. A plain value.
struct BrandMarkShape {
    std::string platform;

    /// The mark in `rect`, as large as fits, in its proportions and in the middle; empty when the platform
    /// has none.
    VectorPath path(const PathRect& rect, BrandMarkCache& cache) const;

    bool operator==(const BrandMarkShape&) const = default;
};

} // namespace roost
