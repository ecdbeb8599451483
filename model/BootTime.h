#pragma once

#include <chrono>
#include <functional>

namespace roost {

/// Time since some moment in the past that goes on while the machine sleeps and that nobody sets. Injected
/// where an interval is to be measured; called on the main thread.
using BootTime = std::function<std::chrono::milliseconds()>;

} // namespace roost
