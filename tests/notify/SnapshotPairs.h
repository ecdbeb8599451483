#pragma once

#include "model/RoostSnapshot.h"

#include <array>
#include <cstdint>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace roost::test {

/// Two snapshots of one profile and what is known of it already.
struct SnapshotPair {
    std::optional<RoostSnapshot> before;
    RoostSnapshot now;
    /// Keys of the ledger.
    std::set<std::string> known;
};

/// Makes pairs of snapshots out of few ids, few times and few numbers, so that things meet: posts that stay,
/// vanish and come twice, thresholds hit exactly and missed by one, keys that the ledger has. The same seed
/// gives the same pairs on every machine.
class SnapshotPairs {
public:
    explicit SnapshotPairs(std::uint64_t seed) : engine_{seed} {}

    /// One pair in twenty has no snapshot before.
    SnapshotPair next();

    RoostSnapshot snapshot();

private:
    std::uint64_t below(std::uint64_t bound) { return engine_() % bound; }

    template <class T, std::size_t count>
    T oneOf(const std::array<T, count>& all)
    {
        return all.at(below(count));
    }

    RoostSnapshot::BestPost best();
    RoostSnapshot::Posts::Next post();

    /// Some of `keys`, and one that nobody asks for.
    std::set<std::string> someOf(const std::vector<std::string>& keys);

    std::mt19937_64 engine_;
};

} // namespace roost::test
