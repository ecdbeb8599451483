#pragma once

#include "tests/app/AppSimulationJudge.h"

#include <optional>

namespace roost::test {

/// When cycles have to begin, worked out beside the app from what is seen of it: every cycle begins when it
/// is due or asked for, and at no other time.
class CadenceLaw {
public:
    using Milliseconds = std::chrono::milliseconds;

    CadenceLaw(Judge& judge, VirtualTime& time) : judge_{&judge}, time_{&time} {}

    /// A new process.
    void reset();
    /// Somebody asked for fresh numbers, and was heard.
    void requested();
    void began();
    void ended();
    /// What the running cycle came to for one profile.
    void updated() { sawUpdate_ = true; }
    void failed(std::optional<double> retryAfter);
    /// What the running cycle comes to cannot be told from outside.
    void blur() { isBlurred_ = isBlurred_ || isRunning_; }
    /// All that was due at this moment has happened.
    void momentIsOver();

    bool isRunning() const { return isRunning_; }
    bool isBlurred() const { return isBlurred_; }
    bool sawUpdate() const { return sawUpdate_; }
    /// Of the cycle that runs or was the last.
    Milliseconds lastStart() const { return start_; }
    /// How many began in the hour that goes on.
    int cyclesInHour() const { return cycles_; }

private:
    struct Range {
        Milliseconds least;
        Milliseconds most;
    };

    Milliseconds now() const { return time_->bootTime()(); }
    Range delay();
    void countHour();

    Judge* judge_;
    VirtualTime* time_;
    bool isRunning_ = false;
    Milliseconds start_{-1'000'000};
    /// When the loop's next cycle is due; nothing before the first one.
    std::optional<Range> due_;
    /// The running cycle was begun by the loop, or the loop waits for it.
    bool isLoops_ = false;
    bool isJoined_ = false;
    bool isAskedFor_ = false;
    bool isPromised_ = false;
    bool isBlurred_ = false;
    bool sawUpdate_ = false;
    bool sawFailure_ = false;
    std::optional<double> retryAfter_;
    /// How many cycles in a row failed; nothing while it cannot be told.
    std::optional<int> failures_ = 0;
    Milliseconds hour_{0};
    int cycles_ = 0;
    int requests_ = 0;
};

} // namespace roost::test
