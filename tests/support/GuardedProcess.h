#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace roost::test {

/// A program that a test starts, with the environment of this process. It and everything it started are
/// killed when this object goes, and also when the test process ends in any other way (or the thread that
/// made this, so make it on the main thread). What it writes to standard error is dropped.
class GuardedProcess {
public:
    /// Starts `command`, a program found by PATH and its arguments, which reads `input` (less than a pipe
    /// holds) and then the end of its input. Throws when no process can be made.
    explicit GuardedProcess(const std::vector<std::string>& command, const std::string& input = {});
    ~GuardedProcess();
    GuardedProcess(const GuardedProcess&) = delete;
    GuardedProcess& operator=(const GuardedProcess&) = delete;

    /// Waits for the next line of its output, without its end; empty when there is none within the guard time
    /// or the program has ended.
    std::string line();

    /// The program itself.
    pid_t pid() const { return program_; }

    /// Stops it where it stands (SIGSTOP), and has it go on. Each returns when that has happened.
    void freeze() const;
    void thaw() const;

    /// Kills it and what it started, and returns when they are gone. Once or more.
    void end();

private:
    pid_t guardian_ = -1;
    pid_t program_ = -1;
    int output_ = -1;
    std::string received_;
};

} // namespace roost::test
