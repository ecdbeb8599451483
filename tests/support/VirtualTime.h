#pragma once

#include "model/Arrival.h"
#include "model/BootTime.h"
#include "model/Clock.h"
#include "model/Pause.h"

#include <chrono>
#include <map>

namespace roost::test {

/// Time that passes when a test says so: a clock, a boot clock and pauses that agree. It outlives what it
/// gave out.
class VirtualTime {
public:
    explicit VirtualTime(Date now) : now_(now) {}

    Clock clock()
    {
        return [this] { return now_; };
    }
    BootTime bootTime()
    {
        return [this] { return sinceBoot_; };
    }
    Pause pause()
    {
        return [this](std::chrono::duration<double> length, std::stop_token stop) {
            return paused(length, std::move(stop));
        };
    }

    Date now() const { return now_; }

    /// Lets so much time pass: each pause that ends in it ends at its moment, in order, and what follows from
    /// it happens before the next one does. Zero delivers what waits to be delivered.
    void advance(std::chrono::milliseconds time);

    /// Goes on to the next moment at which a pause ends, and no further than `time` from now. Whether one
    /// ended.
    bool step(std::chrono::milliseconds time);

    /// Lets so much time pass while the machine sleeps: nothing happens in it, and what was due then is due
    /// now.
    void sleep(std::chrono::milliseconds time) { moveTo(sinceBoot_ + time); }

    /// Ends every pause that is on, without any time passing, and delivers what follows from it.
    void hurry();

    /// Sets the clock that people read, and nothing else.
    void setClock(Date now) { now_ = now; }

    /// How many pauses are on.
    std::size_t pauses() const { return pauses_.size(); }

private:
    QCoro::Task<void> paused(std::chrono::duration<double> length, std::stop_token stop);
    void moveTo(std::chrono::milliseconds sinceBoot);

    Date now_;
    std::chrono::milliseconds sinceBoot_{1'000'000};
    /// By their ends.
    std::multimap<std::chrono::milliseconds, Arrival<bool>> pauses_;
};

/// Delivers all that waits in the event loop of this thread, and what follows from it. Nothing is waited for.
void deliverEvents();

} // namespace roost::test
