#pragma once

#include <cstdint>

namespace roost::local {

/// One of 2^64 numbers, the same each time for the same arguments and without a visible pattern between
/// neighbours: what makes profiles differ from each other without a state to carry along.
constexpr std::uint64_t seededHash(std::uint64_t seed, std::uint64_t purpose, std::int64_t number)
{
    std::uint64_t value = seed;
    for (const std::uint64_t part : {purpose, static_cast<std::uint64_t>(number)}) {
        value = (value ^ part) + 0x9e3779b97f4a7c15U;
        value = (value ^ (value >> 30U)) * 0xbf58476d1ce4e5b9U;
        value = (value ^ (value >> 27U)) * 0x94d049bb133111ebU;
        value ^= value >> 31U;
    }
    return value;
}

/// The same as a number from `lowest` to `highest`, both included. `lowest` must not be above `highest`.
constexpr std::int64_t seededNumber(std::uint64_t seed, std::uint64_t purpose, std::int64_t number,
                                    std::int64_t lowest, std::int64_t highest)
{
    const auto width = static_cast<std::uint64_t>(highest - lowest) + 1;
    return lowest + static_cast<std::int64_t>(seededHash(seed, purpose, number) % width);
}

} // namespace roost::local
