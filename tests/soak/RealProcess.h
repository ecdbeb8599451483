#pragma once

#include "tests/support/RunUntil.h"

#include <sys/types.h>

#include <QProcess>
#include <QProcessEnvironment>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace roost::test {

/// A program that runs for long beside the test, its standard error in a file. Killed when this goes, and
/// when the test process ends in any other way. Main thread, whose event loop runs while something is
/// awaited.
class RealProcess {
public:
    /// Throws when it does not start.
    RealProcess(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment,
                const std::filesystem::path& errors);
    ~RealProcess();
    RealProcess(const RealProcess&) = delete;
    RealProcess& operator=(const RealProcess&) = delete;

    pid_t pid() const { return pid_; }
    bool isRunning() const { return process_.state() == QProcess::Running; }

    /// The next line of its output. Throws after the guard time.
    QByteArray line();

    void signal(int number) const;

    /// Waits for its end: its exit code, or the negative number of the signal that ended it. Nothing when it
    /// does not end within `guard`.
    std::optional<int> ended(std::chrono::milliseconds guard = guardTime);

private:
    QProcess process_;
    pid_t pid_ = -1;
};

} // namespace roost::test
