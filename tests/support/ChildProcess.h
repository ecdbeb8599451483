#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>

namespace roost::test {

/// A copy of this process (fork) that does one piece of work and ends, never returning into the test. The
/// work must not use the assertions of the test framework: it says what it found as text.
class ChildProcess {
public:
    /// What the child can do to talk to its parent.
    class Voice {
    public:
        explicit Voice(int descriptor) : descriptor_{descriptor} {}

        /// Sends `text` at once.
        void say(const std::string& text) const;

    private:
        int descriptor_;
    };

    explicit ChildProcess(const std::function<void(const Voice&)>& work);

    /// Kills the child when it has not been waited for.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Waits for the next line of what the child says, without its end; empty when the child has ended.
    std::string line();

    /// Waits for the child to end and gives all that it said since the last line.
    std::string wait();

    /// After `wait`: the signal that ended the child, 0 when it came to its end.
    int signal() const;

private:
    bool receive();
    void reap();

    pid_t pid_ = -1;
    int descriptor_ = -1;
    int status_ = 0;
    std::string received_;
};

/// What `work` gives in a process of its own; "killed by signal N" when it did not come to its end.
std::string inChildProcess(const std::function<std::string()>& work);

/// The same, done by a user without privileges: by this one, unless that is the administrator. He hands
/// `owned` to that user first.
std::string withoutPrivileges(const std::function<std::string()>& work,
                              const std::filesystem::path& owned = {});

} // namespace roost::test
