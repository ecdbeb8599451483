#pragma once

#include <cstddef>

namespace roost {

/// In bytes. Longer addresses are no callbacks, and are not even looked at.
inline constexpr std::size_t longestCallback = 8 * 1024;

/// What became of an address that was handed to whoever may be waiting for it.
enum class Handover {
    /// It was taken.
    taken,
    /// Somebody is there, who was not waiting for this address, or does not answer.
    declined,
    /// Nobody is there.
    nobody,
    /// The way itself is missing: no session bus, no folder of this user's own.
    noWay,
};

} // namespace roost
