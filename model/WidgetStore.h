#pragma once

#include "model/FileSystem.h"
#include "model/RoostStoreFile.h"

#include <expected>
#include <filesystem>
#include <optional>
#include <system_error>

namespace roost {

/// The file "widget-state.json" in the shared folder. The app is its only writer and calls from the main
/// thread; readers may be in any process. Holds a reference to the file system, which must outlive it.
class WidgetStore {
public:
    WidgetStore(FileSystem& files, std::filesystem::path directory);

    const std::filesystem::path& directory() const { return directory_; }

    FileSystem& files() const { return *files_; }

    /// "widget-state.json" in `directory`.
    std::filesystem::path file() const;

    /// Writes `contents` atomically and durably, making the folder first. On failure the old file stays (the
    /// new one when only the last flush failed), and one line goes to the log, unless the error is `said`:
    /// what has been told of the last time need not be told again. There is no retry.
    std::expected<void, std::error_code> write(const RoostStoreFile& contents,
                                               std::error_code said = {}) const;

    /// The file's contents; nothing, silently, when it is missing, unreadable, not a store file, or larger
    /// than 512 MiB.
    std::optional<RoostStoreFile> read() const;

    /// Whether there is a file whose bytes cannot be had at the moment. To write then would drop records that
    /// nobody has looked at.
    bool isWithheld() const;

private:
    FileSystem* files_;
    std::filesystem::path directory_;
};

} // namespace roost
