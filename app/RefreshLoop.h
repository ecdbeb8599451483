#pragma once

#include "app/TaskGroup.h"
#include "model/AppState.h"
#include "model/BootTime.h"
#include "model/Clock.h"
#include "model/Pause.h"
#include "model/SyncOutcome.h"
#include "service/Completion.h"

#include <QCoro/QCoroTask>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace roost {

/// When refresh cycles run: one every five minutes, sooner after one that failed and when somebody asks.
/// Cycles never overlap. What a cycle does is its owner's.
///
/// Held by `std::shared_ptr`, and kept alive by its tasks; the state outlives them. Main thread.
class RefreshLoop final : public std::enable_shared_from_this<RefreshLoop> {
public:
    using Outcomes = std::vector<SyncOutcome::Any>;

    /// From one clean cycle to the next, as people are told.
    static constexpr std::chrono::seconds interval{300};
    /// From a cycle during which somebody asked for another to that.
    static constexpr std::chrono::seconds rerunDelay{1};
    /// Requests that come so soon after the beginning of a cycle are one with what began it.
    static constexpr std::chrono::seconds burst{2};

    struct Parts {
        /// Syncs every signed-in profile once and folds in what comes of each. Ends early on a stop.
        std::function<QCoro::Task<Outcomes>(std::stop_token)> sync;
        /// Writes down what the cycle came to, before the next one is planned.
        std::function<void()> persist;
        Clock now;
        BootTime bootTime;
        Pause pause;
        /// From one clean cycle to the next.
        std::chrono::seconds interval = RefreshLoop::interval;
    };

    RefreshLoop(AppState& state, Parts parts);
    RefreshLoop(const RefreshLoop&) = delete;
    RefreshLoop& operator=(const RefreshLoop&) = delete;

    /// Runs cycles from now on, the first one at once, until `stop`. Once.
    void startLoop();

    /// Asks for a cycle soon: now, or a second after the one that is running. Nothing before `startLoop`,
    /// after `stop`, and when a cycle began less than two seconds ago and has ended since.
    void requestRefresh();

    /// The same; ends with the cycle that this led to, or that made it unnecessary. Before `startLoop`, that
    /// is the first one.
    QCoro::Task<void> refreshed();

    /// No further cycle begins, and the running one is asked to end early.
    void stop();

    /// Ends when nothing of this runs any more; after `stop` only.
    QCoro::Task<void> settled();

private:
    using Self = std::shared_ptr<RefreshLoop>;
    using Running = Completion<std::chrono::duration<double>>;

    static QCoro::Task<void> run(Self self);
    static QCoro::Task<void> awaitCycles(Self self, int count);
    static QCoro::Task<void> runRequested(Self self);
    /// Runs one cycle, or waits for the one that is running. How long to wait until the next.
    static QCoro::Task<std::chrono::duration<double>> refreshCycle(Self self);
    static QCoro::Task<std::chrono::duration<double>> runCycle(Self self);
    static QCoro::Task<void> sleep(Self self, std::chrono::duration<double> delay);

    std::chrono::duration<double> concluded(const Outcomes& outcomes);
    void hurry();
    bool isStopping() const { return stopping_.stop_requested(); }

    AppState* state_;
    Parts parts_;
    std::stop_source stopping_;

    bool isStarted_ = false;
    /// The cycle in flight.
    std::shared_ptr<Running> running_;
    /// Complete when the next cycle that ends has ended, or when none will.
    std::shared_ptr<Completion<bool>> nextEnd_ = std::make_shared<Completion<bool>>();
    bool rerunRequested_ = false;
    /// How many cycles in a row had a profile that failed.
    std::int64_t consecutiveFailures_ = 0;
    std::optional<std::chrono::milliseconds> lastCycleStart_;

    /// When the loop's next cycle is due, while it sleeps.
    std::chrono::duration<double> due_{};
    /// Wakes the sleeping loop, to look at `due_` again.
    std::stop_source alarm_;

    TaskGroup tasks_;
};

} // namespace roost
