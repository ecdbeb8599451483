#pragma once

#include "model/Pause.h"

namespace roost {

/// A pause that goes on while the machine sleeps: what is due by then ends soon after it wakes. One timer of
/// the kernel (timerfd_create(2), CLOCK_BOOTTIME) and no wake-up in between; where the system has none left,
/// a pause on the event loop.
QCoro::Task<void> pauseOnBootTime(std::chrono::duration<double> length, std::stop_token stop);

} // namespace roost
