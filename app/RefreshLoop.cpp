#include "app/RefreshLoop.h"

#include "model/RoostLog.h"
#include "service/SyncReducer.h"

#include <algorithm>
#include <utility>

namespace roost {

namespace {

using Seconds = std::chrono::duration<double>;

template <class Outcome>
bool holdsAny(const RefreshLoop::Outcomes& outcomes)
{
    return std::ranges::any_of(outcomes,
                               [](const auto& outcome) { return std::holds_alternative<Outcome>(outcome); });
}

} // namespace

RefreshLoop::RefreshLoop(AppState& state, Parts parts) : state_{&state}, parts_{std::move(parts)} {}

void RefreshLoop::startLoop()
{
    isStarted_ = true;
    tasks_.add(run(shared_from_this()));
}

void RefreshLoop::requestRefresh()
{
    if (!isStarted_ || isStopping()) {
        return;
    }
    qCInfo(RoostLog::sync, "refresh requested");
    if (running_) {
        rerunRequested_ = true;
        return;
    }
    if (lastCycleStart_ && parts_.bootTime() - *lastCycleStart_ < burst) {
        return;
    }
    // The loop keeps its own time, whatever this comes to.
    tasks_.add(runRequested(shared_from_this()));
}

QCoro::Task<void> RefreshLoop::refreshed()
{
    requestRefresh();
    const bool isOneToCome = running_ || !isStarted_;
    return awaitCycles(shared_from_this(), isOneToCome ? (rerunRequested_ ? 2 : 1) : 0);
}

QCoro::Task<void> RefreshLoop::awaitCycles(Self self, int count)
{
    for (; count > 0 && !self->isStopping(); --count) {
        const std::shared_ptr<Completion<bool>> end = self->nextEnd_;
        auto waiting = end->wait(self->stopping_.get_token());
        co_await waiting;
    }
}

void RefreshLoop::stop()
{
    stopping_.request_stop();
    alarm_.request_stop();
}

QCoro::Task<void> RefreshLoop::settled() { return tasks_.settled(); }

QCoro::Task<void> RefreshLoop::run(Self self)
{
    while (!self->isStopping()) {
        auto cycling = refreshCycle(self);
        const Seconds delay = co_await cycling;
        auto sleeping = sleep(self, delay);
        co_await sleeping;
    }
}

QCoro::Task<void> RefreshLoop::runRequested(Self self)
{
    auto cycling = refreshCycle(self);
    co_await cycling;
}

QCoro::Task<Seconds> RefreshLoop::refreshCycle(Self self)
{
    if (const std::shared_ptr<Running> running = self->running_) {
        auto waiting = running->wait({});
        const std::optional<Seconds> delay = co_await waiting;
        co_return delay.value_or(self->parts_.interval);
    }
    auto running = runCycle(self);
    const Seconds delay = co_await running;
    co_return delay;
}

QCoro::Task<Seconds> RefreshLoop::runCycle(Self self)
{
    const auto running = std::make_shared<Running>();
    self->running_ = running;
    self->lastCycleStart_ = self->parts_.bootTime();
    self->state_->setRefreshing(true);

    auto syncing = self->parts_.sync(self->stopping_.get_token());
    const Outcomes outcomes = co_await syncing;

    const Seconds delay = self->concluded(outcomes);
    self->running_.reset();
    // Before anybody hears of it: who asks again then waits for the next one.
    const auto ended = std::exchange(self->nextEnd_, std::make_shared<Completion<bool>>());
    self->state_->setRefreshing(false);
    running->complete(delay);
    ended->complete(true);
    co_return delay;
}

Seconds RefreshLoop::concluded(const Outcomes& outcomes)
{
    if (holdsAny<SyncOutcome::Updated>(outcomes)) {
        state_->setLastRefreshAt(parts_.now());
    }
    consecutiveFailures_ = holdsAny<SyncOutcome::Failed>(outcomes) ? consecutiveFailures_ + 1 : 0;
    parts_.persist();
    if (std::exchange(rerunRequested_, false)) {
        hurry();
        return rerunDelay;
    }
    return Seconds{SyncReducer::nextDelay(outcomes, consecutiveFailures_, Seconds{parts_.interval}.count())};
}

QCoro::Task<void> RefreshLoop::sleep(Self self, Seconds delay)
{
    self->due_ = self->parts_.bootTime() + delay;
    while (!self->isStopping()) {
        const Seconds left = self->due_ - Seconds{self->parts_.bootTime()};
        if (left <= Seconds::zero()) {
            break;
        }
        self->alarm_ = std::stop_source{};
        auto pausing = self->parts_.pause(left, self->alarm_.get_token());
        co_await pausing;
    }
}

/// The next cycle is due in a second, also where the loop sleeps beside one that was requested.
void RefreshLoop::hurry()
{
    due_ = std::min(due_, Seconds{parts_.bootTime() + rerunDelay});
    alarm_.request_stop();
}

} // namespace roost
