#include "model/Clock.h"

namespace roost {

Clock systemClock()
{
    return [] { return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now()); };
}

} // namespace roost
