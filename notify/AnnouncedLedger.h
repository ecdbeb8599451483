#pragma once

#include "model/Date.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace roost {

/// What was noticed already, so that nothing is announced twice. A plain value; equality is member-wise.
struct AnnouncedLedger {
    /// From key to the moment when it was first recorded.
    std::map<std::string, Date> entries;

    /// Records each key with this time. A key that is there keeps the time it has.
    void mark(const std::vector<std::string>& keys, Date at);

    /// Keeps the newest `keeping` entries and drops the rest; of entries with equal times, those whose keys
    /// come first (by their bytes) are kept.
    void prune(std::size_t keeping);

    bool operator==(const AnnouncedLedger&) const = default;
};

} // namespace roost
