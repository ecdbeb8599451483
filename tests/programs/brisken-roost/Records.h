#pragma once

#include "model/RoostStoreFile.h"
#include "present/RoostFormat.h"

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

/// A profile that has some of everything, with numbers of a minute and a half ago.
inline RoostAccountRecord fullRecord()
{
    using namespace std::chrono_literals;
    RoostAccountRecord record = recordOf("ada", 48213, 90s);
    record.profileName = "Ada";
    record.snapshot->views.previous = 43'000;
    record.snapshot->followers = RoostSnapshot::Followers{1310, {}, {{"x", {}, 1310, 26}}};
    record.snapshot->posts = {
        4, 12, 1, {{"later", noon + 48h, "Later", {}}, {"n", noon + 21h + 30min, "Morning light", {}}}};
    record.snapshot->best = RoostSnapshot::BestPost{"x", "X", 9200, "Hello", {}};
    return record;
}

inline RoostFormat inUtc(const std::string& locale)
{
    return RoostFormat{{.locale = locale, .calendarTimeZone = "UTC", .timeZone = "UTC"}};
}

inline RoostStoreFile fileOf(std::vector<RoostAccountRecord> accounts)
{
    RoostStoreFile file;
    file.writtenAt = noon;
    file.accounts = std::move(accounts);
    return file;
}

} // namespace roost::test
