#include "programs/brisken-roost/AccountFile.h"

#include "platform/FolderLock.h"

#include <algorithm>
#include <utility>

namespace roost {

std::vector<RoostAccountRecord> AccountFile::records() const
{
    return store_.read().value_or(RoostStoreFile{}).accounts;
}

std::optional<RoostAccountRecord> AccountFile::record(const std::string& profileId) const
{
    auto all = records();
    const auto found = std::ranges::find(all, profileId, &RoostAccountRecord::profileId);
    return found == all.end() ? std::nullopt : std::optional{std::move(*found)};
}

bool AccountFile::note(const std::string& profileId, SyncOutcome::Any outcome) const
{
    const FolderLock lock{store_.directory()};
    auto all = records();
    auto record = std::ranges::find(all, profileId, &RoostAccountRecord::profileId);
    if (record == all.end()) {
        if (!std::holds_alternative<SyncOutcome::Updated>(outcome)) {
            return true;
        }
        record = all.insert(all.end(), RoostAccountRecord{.profileId = profileId});
    }
    *record = folded(std::move(*record), std::move(outcome), now_());
    return write(std::move(all));
}

bool AccountFile::remove(const std::string& profileId) const
{
    const FolderLock lock{store_.directory()};
    auto all = records();
    if (std::erase_if(all, [&](const auto& record) { return record.profileId == profileId; }) == 0) {
        return true;
    }
    return write(std::move(all));
}

bool AccountFile::write(std::vector<RoostAccountRecord> records) const
{
    return !store_.isWithheld() &&
           store_.write({.writtenAt = now_(), .accounts = std::move(records)}).has_value();
}

} // namespace roost
