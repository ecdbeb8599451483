#pragma once

#include "model/RoostAccountRecord.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace roost {

/// The record to show: the first with that id, also a signed-out one; otherwise the first whose status is ok;
/// otherwise the first. Null when there is none. Points into `accounts`; valid as long as they are not
/// changed.
const RoostAccountRecord* accountFor(const std::vector<RoostAccountRecord>& accounts,
                                     const std::optional<std::string>& profileId);

/// The whole of "widget-state.json". A plain value.
struct RoostStoreFile {
    static constexpr std::int64_t currentSchema = 1;

    /// Written, never compared on reading.
    std::int64_t schema = currentSchema;
    Date writtenAt;
    /// In the order of the app.
    std::vector<RoostAccountRecord> accounts;

    /// As the free function, of these accounts.
    const RoostAccountRecord* accountFor(const std::optional<std::string>& profileId) const
    {
        return roost::accountFor(accounts, profileId);
    }

    bool operator==(const RoostStoreFile&) const = default;
};

} // namespace roost
