#pragma once

#include "model/Clock.h"
#include "model/SyncOutcome.h"
#include "model/WidgetStore.h"

#include <optional>
#include <string>

namespace roost {

/// Changes single records of the shared file: each call reads it anew, changes one record and writes it, and
/// no other process of this program does so meanwhile. Main thread.
class AccountFile {
public:
    AccountFile(WidgetStore store, Clock now) : store_(std::move(store)), now_(std::move(now)) {}

    /// The records as they stand; none when there is no readable file.
    std::vector<RoostAccountRecord> records() const;

    std::optional<RoostAccountRecord> record(const std::string& profileId) const;

    /// Folds `outcome` into the record of that profile, a new one at the end where there is none and the
    /// outcome has a name for it. False when the file could not be written.
    bool note(const std::string& profileId, SyncOutcome::Any outcome) const;

    /// Removes the record, where there is one. False when the file could not be written.
    bool remove(const std::string& profileId) const;

private:
    bool write(std::vector<RoostAccountRecord> records) const;

    WidgetStore store_;
    Clock now_;
};

} // namespace roost
