#pragma once

#include <QProcess>

#include <chrono>
#include <functional>
#include <string>

namespace roost::test {

/// Far longer than a browser takes on a busy machine for anything that a test asks of it.
inline constexpr std::chrono::seconds browserGuard{120};

/// What became of a run.
struct Finished {
    /// -1 when a signal ended it.
    int code = -1;
    std::string output;
    std::string error;
};

/// The real program, brisken-roost, as a process of its own that the test deals with while it runs. Killed
/// when this goes, and when the test process ends in any other way. Main thread, whose event loop runs while
/// something is awaited.
class ProgramRun {
public:
    /// `prepare` is called in the new process before the program is (async-signal-safe, and false for
    /// giving up: the program then ends with 77).
    ProgramRun(
        const QStringList& arguments, const QProcessEnvironment& environment,
        std::function<bool()> prepare = [] { return true; });

    qint64 pid() const { return process_.processId(); }

    /// What it has written to standard error by now.
    const std::string& said() const { return finished_.error; }

    bool hasEnded() const { return process_.state() == QProcess::NotRunning; }

    /// Returns when `text` stands in what the program has written to standard error, which it gives. Throws
    /// after the guard time.
    const std::string& awaitError(const std::string& text);

    /// The address that the program asks its user to open. Throws after the guard time.
    std::string addressToOpen();

    /// Types a line.
    void enter(const std::string& line);

    void signal(int number);

    /// Returns when the program has ended. Throws after the guard time.
    Finished end();

private:
    QProcess process_;
    Finished finished_;
};

} // namespace roost::test
