#pragma once

#include "present/VectorPath.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace roost {

/// The marks of `BrandMarkData`, each parsed once, when it is first asked for. One serves the whole process,
/// on any thread.
class BrandMarkCache {
public:
    /// The mark of `platform` in its box of 24 x 24 units, which lives as long as this cache; null when the
    /// platform has none.
    const VectorPath* path(std::string_view platform);

private:
    std::mutex lock_;
    /// By platform. Nothing is ever removed, and a map never moves what it holds.
    std::map<std::string, VectorPath, std::less<>> parsed_;
};

} // namespace roost
