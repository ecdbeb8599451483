#pragma once

#include <filesystem>

namespace roost {

/// Keeps processes of this program from changing the files of one folder at the same time: flock(2) on the
/// folder itself, let go when this is destroyed or the process ends. Any thread.
class FolderLock {
public:
    /// Waits, a few seconds at most: somebody who is stopped in the middle must not stop everybody. Where
    /// there is no folder yet, there is nothing to lock.
    explicit FolderLock(const std::filesystem::path& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    bool isHeld() const { return isHeld_; }

private:
    int descriptor_;
    bool isHeld_ = false;
};

} // namespace roost
