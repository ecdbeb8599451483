#pragma once

#include "model/FileSystem.h"
#include "model/RoostStoreFile.h"

#include <filesystem>
#include <optional>

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
    /// new one when only the last flush failed), one line goes to the log, and the result is false; there is
    /// no retry.
    bool write(const RoostStoreFile& contents) const;

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
