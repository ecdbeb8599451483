#pragma once

#include "model/FileSystem.h"
#include "model/SharedContainer.h"
#include "notify/AnnouncedLedger.h"

#include <expected>
#include <filesystem>
#include <system_error>

namespace roost {

/// The file of the ledger. The app is its only reader and writer, on the main thread. Holds a reference to
/// the file system, which must outlive it.
class AnnouncedLedgerStore {
public:
    AnnouncedLedgerStore(FileSystem& files, std::filesystem::path url);

    /// "BriskenRoost/announced.json" in the user's data folder, in the temporary folder without one.
    static std::filesystem::path location(const SharedContainer::UserFolders& folders);

    /// Where the file is.
    const std::filesystem::path& url() const { return url_; }

    /// The ledger in the file; an empty one, silently, when the file is missing, cannot be read or is no
    /// ledger. Such a file stays as it is: the next good `save` replaces it.
    AnnouncedLedger load() const;

    /// Writes `ledger` atomically and durably, making the folder first. On failure there is no log line and
    /// no retry, since the next refresh saves the whole ledger again.
    std::expected<void, std::error_code> save(const AnnouncedLedger& ledger) const;

private:
    FileSystem* files_;
    std::filesystem::path url_;
};

} // namespace roost
