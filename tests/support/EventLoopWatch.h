#pragma once

#include "tests/support/RunUntil.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace roost::test {

/// Watches how long the event loop of this thread leaves its events waiting. Time in which the machine did
/// not let the thread run is not counted; it is told by the scheduler's own accounts and by a second thread
/// that does nothing but wake up often.
class EventLoopWatch {
public:
    using Clock = std::chrono::steady_clock;

    EventLoopWatch();
    ~EventLoopWatch();
    EventLoopWatch(const EventLoopWatch&) = delete;
    EventLoopWatch& operator=(const EventLoopWatch&) = delete;

    /// Runs the loop, with an eye on it, until `condition` holds. False when it did not within `guard`.
    [[nodiscard]] bool runUntil(const std::function<bool()>& condition,
                                std::chrono::milliseconds guard = guardTime);

    /// The longest time so far, in `runUntil`, for which an event had to wait because of this thread.
    std::chrono::milliseconds longestWait() const;

private:
    struct Instant {
        Clock::time_point time;
        /// How long the thread has waited for a processor so far.
        std::chrono::nanoseconds waited;
    };

    static Instant now();
    void look();
    void compare(const std::stop_token& stop);
    Clock::duration longestDelayBetween(Clock::time_point begin, Clock::time_point end);

    QTimer timer_;
    Instant last_;
    Clock::duration longest_{};
    std::mutex mutex_;
    /// When the second thread woke up too late, and by how much.
    std::vector<std::pair<Clock::time_point, Clock::duration>> late_;
    std::jthread comparison_;
};

/// Plays `round`, which tells for how long it saw the loop held up, until one stays within `limit`, ten
/// times at most. Returns the shortest of these times. A machine that takes a processor away, which no
/// account tells, spoils one round or another; a program that holds up its loop does it in every one.
std::chrono::milliseconds waitInTheBestRound(std::chrono::milliseconds limit,
                                             const std::function<std::chrono::milliseconds()>& round);

} // namespace roost::test
