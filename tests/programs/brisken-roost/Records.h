#pragma once

#include "model/RoostStoreFile.h"

#include <string>

namespace roost::test {

inline const Date noon =
    Date{std::chrono::sys_days{std::chrono::year{2026} / 3 / 14}} + std::chrono::hours{12};

inline RoostSnapshot snapshotOf(const std::string& id, std::int64_t views)
{
    RoostSnapshot snapshot;
    snapshot.generatedAt = noon;
    snapshot.profile = {id, "Profile " + id, {}};
    snapshot.views.total = views;
    return snapshot;
}

/// A signed-in profile whose numbers were fetched `age` before noon.
inline RoostAccountRecord recordOf(const std::string& id, std::int64_t views, std::chrono::seconds age)
{
    return folded({id, "Profile " + id}, SyncOutcome::Updated{snapshotOf(id, views)}, noon - age);
}

inline RoostAccountRecord signedOut(RoostAccountRecord record)
{
    record.status = RoostAccountRecord::Status::signedOut;
    return record;
}

inline RoostStoreFile fileOf(std::vector<RoostAccountRecord> accounts)
{
    RoostStoreFile file;
    file.writtenAt = noon;
    file.accounts = std::move(accounts);
    return file;
}

} // namespace roost::test
