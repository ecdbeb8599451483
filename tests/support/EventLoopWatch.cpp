#include "tests/support/EventLoopWatch.h"

#include <QAbstractEventDispatcher>

#include <algorithm>
#include <fstream>

namespace roost::test {

EventLoopWatch::EventLoopWatch() : comparison_([this](const std::stop_token& stop) { compare(stop); })
{
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, &context_, [this] {
        if (!awake_) {
            awake_ = now();
        }
    });
    QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &context_, [this] { endTurn(); });
}

EventLoopWatch::~EventLoopWatch() = default;

std::chrono::milliseconds EventLoopWatch::longestTurn() const
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

void EventLoopWatch::endTurn()
{
    if (!awake_) {
        return;
    }
    const Instant end = now();
    const Clock::duration excused =
        std::max<Clock::duration>(end.waited - awake_->waited, latenessBetween(awake_->time, end.time));
    longest_ = std::max(longest_, end.time - awake_->time - excused);
    awake_.reset();
}

void EventLoopWatch::compare(const std::stop_token& stop)
{
    constexpr std::chrono::milliseconds nap{2};
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

EventLoopWatch::Clock::duration EventLoopWatch::latenessBetween(Clock::time_point begin,
                                                                Clock::time_point end)
{
    const std::scoped_lock held(mutex_);
    Clock::duration sum{};
    for (const auto& [woken, lateness] : late_) {
        if (woken > begin && woken - lateness < end) {
            sum += std::min(woken, end) - std::max(woken - lateness, begin);
        }
    }
    std::erase_if(late_, [begin](const auto& entry) { return entry.first < begin; });
    return sum;
}

} // namespace roost::test
