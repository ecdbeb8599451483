#pragma once

#include "model/SyncOutcome.h"

#include <cstdint>
#include <span>

/// What the outcomes of one refresh cycle mean for the next. Pure.
namespace roost::SyncReducer {

/// How long to wait until the next cycle, in seconds: `interval` when nothing failed; otherwise 60 s doubled
/// with every further one of the `consecutiveFailures`, lengthened to the first retry time among the
/// `outcomes`, and never more than `interval`. Precondition: when something failed, `consecutiveFailures` is
/// not the smallest number there is; that ends the program.
double nextDelay(std::span<const SyncOutcome::Any> outcomes, std::int64_t consecutiveFailures,
                 double interval);

} // namespace roost::SyncReducer
