#pragma once

#include "model/RoostSnapshot.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace roost::local {

/// How large a profile is and what of it is counted.
struct ProfileShape {
    /// Platform identifiers whose networks tell views, at least one.
    std::vector<std::string> reporting;
    /// Platform identifiers whose networks tell none.
    std::vector<std::string> silent;
    std::int64_t viewsPerDay = 0;
    std::chrono::hours postInterval{24};
    RoostSnapshot::Views::Basis basis = RoostSnapshot::Views::Basis::growth;
    bool hasFollowers = true;
};

/// The shape of the profile at `position`, counted from 0.
ProfileShape profileShape(std::uint64_t seed, std::size_t position);

} // namespace roost::local
