#include "platform/SystemBootTime.h"

#include <ctime>

namespace roost {

BootTime systemBootTime()
{
    return [] {
        timespec now{};
        ::clock_gettime(CLOCK_BOOTTIME, &now);
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::seconds(now.tv_sec) +
                                                                     std::chrono::nanoseconds(now.tv_nsec));
    };
}

} // namespace roost
