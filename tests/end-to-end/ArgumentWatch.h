#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <mutex>
#include <set>
#include <thread>

namespace roost::test {

/// Looks every few milliseconds at the command lines of all processes of this user, as another of their
/// programs can, and keeps each that it sees. On a thread of its own; used on the main thread.
class ArgumentWatch {
public:
    ArgumentWatch();

    /// The words with `text` in them of all command lines that were seen.
    QByteArrayList wordsWith(const QByteArray& text) const;

private:
    void look();

    mutable std::mutex mutex_;
    /// As in /proc/PID/cmdline: words that end with a null byte.
    std::set<QByteArray> lines_;
    // Last, so that it ends before what it fills.
    std::jthread thread_;
};

} // namespace roost::test
