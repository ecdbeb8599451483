#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace roost {

/// Tells when the user or the system wants the program to end: SIGINT, SIGTERM or SIGHUP. The first of each
/// is only told; the next one ends the program at once, as if nobody listened. Programs that are started from
/// here are not affected. One at a time; main thread.
class TerminationSignals {
public:
    /// `wanted` is called from the event loop.
    explicit TerminationSignals(std::function<void()> wanted);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace roost
