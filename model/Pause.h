#pragma once

#include <QCoro/QCoroTask>

#include <chrono>
#include <functional>
#include <stop_token>

namespace roost {

/// Waits that long; ends early, and quietly, when asked to stop. Main thread.
using Pause = std::function<QCoro::Task<void>(std::chrono::duration<double>, std::stop_token)>;

/// A pause on the event loop of the calling thread; it lengthens by the time for which the machine sleeps. No
/// longer than what an `int` holds in milliseconds, some weeks.
QCoro::Task<void> pauseOnEventLoop(std::chrono::duration<double> length, std::stop_token stop);

} // namespace roost
