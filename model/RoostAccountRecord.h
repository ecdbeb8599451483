#pragma once

#include "model/SyncOutcome.h"

#include <optional>
#include <string>

namespace roost {

/// One profile's last numbers and the state of its sign-in. A plain value, identified by `profileId`;
/// equality is member-wise.
struct RoostAccountRecord {
    /// `signedOut`: the service ended the authorization. Any other text fails the record.
    enum class Status { ok, signedOut };

    std::string profileId;
    std::string profileName;
    Status status = Status::ok;
    /// The last good numbers; a later failure keeps them.
    std::optional<RoostSnapshot> snapshot;
    /// When `snapshot` was last replaced by a fresh one.
    std::optional<Date> fetchedAt;
    /// When a refresh was last tried, whatever came of it.
    std::optional<Date> lastAttemptAt;

    bool operator==(const RoostAccountRecord&) const = default;
};

/// `record` after a refresh at `now` that came to `outcome`. Updated: snapshot, name and both times are new,
/// the status is ok. Failed: only `lastAttemptAt` moves. Signed out: the status and `lastAttemptAt` change,
/// the last numbers stay. `profileId` never changes.
RoostAccountRecord folded(RoostAccountRecord record, SyncOutcome::Any outcome, Date now);

} // namespace roost
