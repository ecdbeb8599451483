#pragma once

#include <QObject>

#include <chrono>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace roost::test {

/// Watches how long the event loop of this thread is away from its events: from waking up to going back to
/// sleep. Time in which the machine did not let the thread run is not counted; it is told by the scheduler's
/// own accounts and by a second thread that does nothing but wake up often.
class EventLoopWatch {
public:
    using Clock = std::chrono::steady_clock;

    EventLoopWatch();
    ~EventLoopWatch();
    EventLoopWatch(const EventLoopWatch&) = delete;
    EventLoopWatch& operator=(const EventLoopWatch&) = delete;

    /// The longest time so far that was this thread's own.
    std::chrono::milliseconds longestTurn() const;

private:
    struct Instant {
        Clock::time_point time;
        /// How long the thread has waited for a processor so far.
        std::chrono::nanoseconds waited;
    };

    static Instant now();
    void endTurn();
    void compare(const std::stop_token& stop);
    Clock::duration latenessBetween(Clock::time_point begin, Clock::time_point end);

    QObject context_;
    std::optional<Instant> awake_;
    Clock::duration longest_{};
    std::mutex mutex_;
    /// When the second thread woke up too late, and by how much.
    std::vector<std::pair<Clock::time_point, Clock::duration>> late_;
    std::jthread comparison_;
};

} // namespace roost::test
