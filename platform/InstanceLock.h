#pragma once

#include <filesystem>

namespace roost {

/// Who of this user's programs may change this data at the moment: one running app alone, or any number of
/// commands. A flock(2) on a file, held as long as this lives or the process does; programs that are started
/// from here do not inherit it. Nothing waits.
class InstanceLock {
public:
    enum class Kind {
        /// Beside other commands.
        shared,
        /// Alone.
        exclusive,
    };

    /// Makes `file` where it is missing, in a folder that is there.
    explicit InstanceLock(const std::filesystem::path& file);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    /// Takes it, in place of what this holds. Whether that was possible; if not, this holds nothing. Where no
    /// lock can be made, everybody has it.
    bool take(Kind kind);

    /// Lets it go.
    void release();

private:
    int descriptor_;
};

} // namespace roost
