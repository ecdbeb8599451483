#pragma once

#include "model/BootTime.h"

namespace roost {

/// The kernel's own; clock_gettime(2), CLOCK_BOOTTIME.
BootTime systemBootTime();

} // namespace roost
