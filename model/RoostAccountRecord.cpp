#include "model/RoostAccountRecord.h"

#include <utility>

namespace roost {

namespace {

struct Fold {
    RoostAccountRecord& record;
    Date now;

    void operator()(SyncOutcome::Updated&& updated) const
    {
        record.profileName = updated.snapshot.profile.name;
        record.status = RoostAccountRecord::Status::ok;
        record.snapshot = std::move(updated.snapshot);
        record.fetchedAt = now;
        record.lastAttemptAt = now;
    }

    void operator()(SyncOutcome::Failed&&) const { record.lastAttemptAt = now; }

    void operator()(SyncOutcome::SignedOut&&) const
    {
        record.status = RoostAccountRecord::Status::signedOut;
        record.lastAttemptAt = now;
    }
};

} // namespace

RoostAccountRecord folded(RoostAccountRecord record, SyncOutcome::Any outcome, Date now)
{
    std::visit(Fold{record, now}, std::move(outcome));
    return record;
}

} // namespace roost
