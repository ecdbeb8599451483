#pragma once

#include <filesystem>

namespace roost {

/// Tells whether the app runs already for this user and this data: an exclusive flock(2) on a file, held as
/// long as this lives or the process does. Programs that are started from here do not inherit it.
class InstanceLock {
public:
    /// Makes `file` where it is missing, in a folder that is there, and does not wait.
    explicit InstanceLock(const std::filesystem::path& file);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    /// Whether another process has it. Where no lock can be made, nobody has.
    bool isTaken() const { return isTaken_; }

private:
    int descriptor_;
    bool isTaken_ = false;
};

} // namespace roost
