#pragma once

#include "model/Date.h"

#include <functional>

namespace roost {

/// Tells the time of day. Injected wherever a decision depends on it; called on the main thread.
using Clock = std::function<Date()>;

/// The machine's clock, rounded down to the millisecond.
Clock systemClock();

} // namespace roost
