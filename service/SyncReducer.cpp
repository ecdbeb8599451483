#include "service/SyncReducer.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace roost::SyncReducer {

namespace {

constexpr double firstBackOff = 60;

const SyncReason* reasonOf(const SyncOutcome::Any& outcome)
{
    const auto* failed = std::get_if<SyncOutcome::Failed>(&outcome);
    return failed == nullptr ? nullptr : &failed->reason;
}

std::optional<double> firstRetryTime(std::span<const SyncOutcome::Any> outcomes)
{
    for (const SyncOutcome::Any& outcome : outcomes) {
        const SyncReason* reason = reasonOf(outcome);
        if (reason != nullptr && reason->kind == SyncReason::Kind::unavailable && reason->retryAfter) {
            return reason->retryAfter;
        }
    }
    return std::nullopt;
}

} // namespace

double nextDelay(std::span<const SyncOutcome::Any> outcomes, std::int64_t consecutiveFailures,
                 double interval)
{
    if (std::ranges::none_of(outcomes, reasonOf)) {
        return interval;
    }
    if (consecutiveFailures == std::numeric_limits<std::int64_t>::min()) {
        qFatal("a count of failures that cannot be");
    }
    const std::int64_t doublings = std::max<std::int64_t>(consecutiveFailures - 1, 0);
    const double delay = std::min(firstBackOff * std::exp2(static_cast<double>(doublings)), interval);
    const std::optional<double> retryAfter = firstRetryTime(outcomes);
    if (!retryAfter || std::isnan(*retryAfter)) {
        return delay;
    }
    return std::min(std::max(delay, *retryAfter), interval);
}

} // namespace roost::SyncReducer
