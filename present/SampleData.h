#pragma once

#include "model/RoostSnapshot.h"

#include <array>
#include <string_view>

/// Believable numbers, for previews and for trying out what views do with them. Each snapshot is made as if
/// the service had sent it at `now`. Pure; any thread.
namespace roost::SampleData {

/// Two weeks of rising views, a few networks and posts; no best post, no followers.
RoostSnapshot minimal(Date now);

/// Everything that a snapshot can hold, all of it ordinary.
RoostSnapshot rich(Date now);

/// A profile that has only just begun: no views yet, one network, nothing queued.
RoostSnapshot sparse(Date now);

/// Networks that do not report, next to one that does and one that says what this program does not know.
RoostSnapshot failingNetworks(Date now);

/// Names, texts and numbers longer than any view has room for.
RoostSnapshot overflowing(Date now);

/// Names and texts in Hebrew and Arabic, some of them mixed with Latin.
RoostSnapshot rightToLeft(Date now);

struct Sample {
    std::string_view name;
    RoostSnapshot (*make)(Date now);
};

/// All of them, by name.
inline constexpr std::array<Sample, 6> all{{{"minimal", &minimal},
                                            {"rich", &rich},
                                            {"sparse", &sparse},
                                            {"failingNetworks", &failingNetworks},
                                            {"overflowing", &overflowing},
                                            {"rightToLeft", &rightToLeft}}};

} // namespace roost::SampleData
