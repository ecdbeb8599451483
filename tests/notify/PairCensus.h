#pragma once

#include "tests/notify/SnapshotPairs.h"

#include <map>
#include <string>

namespace roost::test {

/// Counts among pairs of snapshots what the planner's rules tell apart, so that a test can say that each was
/// there: what never happens is not tested.
class PairCensus {
public:
    void take(const SnapshotPair& pair);

    /// How many pairs showed it, by its name; also for what none showed.
    const std::map<std::string, int>& counts() const { return counts_; }

private:
    void takeBest(const SnapshotPair& pair, const RoostSnapshot& before);
    void takeNewBest(const SnapshotPair& pair, const RoostSnapshot& before);
    void takeQueue(const SnapshotPair& pair, const RoostSnapshot& before);
    void takeFollowers(const SnapshotPair& pair, const RoostSnapshot& before);

    void count(bool holds, const char* what) { counts_[what] += holds ? 1 : 0; }

    std::map<std::string, int> counts_;
};

} // namespace roost::test
