#include "tests/support/EventLoopWatch.h"

#include <QEventLoop>

#include <algorithm>
#include <fstream>

namespace roost::test {

namespace {

constexpr std::chrono::milliseconds nap{2};

} // namespace

EventLoopWatch::EventLoopWatch()
    : last_(now()),
      comparison_([this](const std::stop_token& stop) { compare(stop); })
{
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(nap);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
}

EventLoopWatch::~EventLoopWatch() = default;

bool EventLoopWatch::runUntil(const std::function<bool()>& condition, std::chrono::milliseconds guard)
{
    QEventLoop loop;
    // Not when the loop is about to sleep: on a busy machine its timer leaves it no time for that.
    QObject::connect(&timer_, &QTimer::timeout, &loop, [&] {
        if (condition()) {
            loop.quit();
        }
    });
    QTimer::singleShot(guard, &loop, &QEventLoop::quit);
    last_ = now();
    timer_.start();
    loop.exec();
    look();
    timer_.stop();
    return condition();
}

std::chrono::milliseconds EventLoopWatch::longestWait() const
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(longest_);
}

EventLoopWatch::Instant EventLoopWatch::now()
{
    std::ifstream accounts{"/proc/thread-self/schedstat"};
    long long running = 0;
    long long waiting = 0;
    accounts >> running >> waiting;
    return {Clock::now(), std::chrono::nanoseconds{waiting}};
}

void EventLoopWatch::look()
{
    const Instant current = now();
    const Clock::duration excused = std::max<Clock::duration>(current.waited - last_.waited,
                                                              longestDelayBetween(last_.time, current.time));
    longest_ = std::max(longest_, current.time - last_.time - nap - excused);
    last_ = current;
}

void EventLoopWatch::compare(const std::stop_token& stop)
{
    while (!stop.stop_requested()) {
        const Clock::time_point due = Clock::now() + nap;
        std::this_thread::sleep_until(due);
        const Clock::time_point woken = Clock::now();
        if (woken - due > nap) {
            const std::scoped_lock held(mutex_);
            late_.emplace_back(woken, woken - due);
        }
    }
}

EventLoopWatch::Clock::duration EventLoopWatch::longestDelayBetween(Clock::time_point begin,
                                                                    Clock::time_point end)
{
    const std::scoped_lock held(mutex_);
    Clock::duration longest{};
    for (const auto& [woken, lateness] : late_) {
        if (woken > begin && woken - lateness < end) {
            longest = std::max(longest, std::min(woken, end) - std::max(woken - lateness, begin));
        }
    }
    std::erase_if(late_, [begin](const auto& entry) { return entry.first < begin; });
    return longest;
}

std::chrono::milliseconds waitInTheBestRound(std::chrono::milliseconds limit,
                                             const std::function<std::chrono::milliseconds()>& round)
{
    std::chrono::milliseconds best = round();
    for (int rounds = 1; rounds < 10 && best > limit; ++rounds) {
        best = std::min(best, round());
    }
    return best;
}

} // namespace roost::test
