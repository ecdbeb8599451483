#include "tests/app/AppSimulationCadence.h"

#include <algorithm>
#include <cmath>

namespace roost::test {

namespace {

using namespace std::chrono_literals;

/// What counts as one moment, for sums of seconds that are no whole numbers.
constexpr std::chrono::milliseconds moment{2};

std::string text(std::chrono::milliseconds time) { return std::to_string(time.count()) + " ms"; }

} // namespace

void CadenceLaw::reset() { *this = CadenceLaw{*judge_, *time_}; }

void CadenceLaw::countHour()
{
    if (now() - hour_ >= 1h) {
        hour_ = now();
        cycles_ = 0;
        requests_ = 0;
    }
}

void CadenceLaw::requested()
{
    countHour();
    ++requests_;
    if (isRunning_) {
        isPromised_ = true;
    } else if (now() - start_ >= 2s) {
        isAskedFor_ = true;
    }
}

void CadenceLaw::began()
{
    countHour();
    ++cycles_;
    // A failing hour has fewer than 24 cycles of its own; each request brings one at once and one after it.
    judge_->expect(cycles_ <= 24 + 2 * requests_, "cycles per hour are bounded", std::to_string(cycles_));
    judge_->expect(!isRunning_, "cycles never overlap");
    const bool isDue = !due_ || now() + moment >= due_->least;
    judge_->expect(isDue || isAskedFor_, "a cycle begins when it is due or asked for",
                   "it was due at " + text(due_.value_or(Range{}).least) + " and began at " + text(now()));
    isLoops_ = isDue && !isAskedFor_;
    isRunning_ = true;
    isJoined_ = false;
    isAskedFor_ = false;
    isPromised_ = false;
    isBlurred_ = false;
    sawUpdate_ = false;
    sawFailure_ = false;
    retryAfter_.reset();
    start_ = now();
}

void CadenceLaw::failed(std::optional<double> retryAfter)
{
    sawFailure_ = true;
    if (!retryAfter_) {
        retryAfter_ = retryAfter;
    }
}

/// From the end of this cycle to the next of the loop.
CadenceLaw::Range CadenceLaw::delay()
{
    if (isBlurred_) {
        failures_.reset();
    } else if (!sawFailure_) {
        failures_ = 0;
    } else if (failures_) {
        ++*failures_;
    }
    if (isPromised_) {
        return {1s, 1s};
    }
    if (!failures_) {
        return {60s, 300s};
    }
    if (*failures_ == 0) {
        return {300s, 300s};
    }
    const double seconds = std::max(60 * std::exp2(std::min(*failures_, 10) - 1), retryAfter_.value_or(0));
    const Milliseconds whole{std::llround(std::min(seconds, 300.0) * 1000)};
    return {whole, whole};
}

void CadenceLaw::ended()
{
    judge_->expect(isRunning_, "a cycle ends that began");
    isRunning_ = false;
    const Range delay = this->delay();
    const Range next{now() + delay.least, now() + delay.most};
    if (isLoops_ || isJoined_ || !due_) {
        due_ = next;
    } else if (now() + moment >= due_->least) {
        // Whether the loop has waited for this one, or comes now, cannot be told.
        due_ = Range{std::min(due_->least, next.least), std::max(due_->most, next.most)};
    } else if (isPromised_) {
        due_ = Range{std::min(due_->least, next.least), std::min(due_->most, next.most)};
    }
}

void CadenceLaw::momentIsOver()
{
    judge_->expect(!isAskedFor_, "who asks for fresh numbers gets them");
    const bool isOverdue = due_ && now() > due_->most + moment;
    const bool isLate = isOverdue && !isRunning_;
    isJoined_ = isJoined_ || (isOverdue && isRunning_);
    judge_->expect(!isLate, "a cycle begins when it is due", due_ ? "due at " + text(due_->most) : "");
}

} // namespace roost::test
