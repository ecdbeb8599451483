#include "tests/support/Poll.h"

#include "tests/support/RunUntil.h"

#include <stdexcept>
#include <thread>

namespace roost::test {

void poll(const std::string& what, const std::function<bool()>& condition)
{
    if (!holdsWithin(guardTime, condition)) {
        throw std::runtime_error("in vain: " + what);
    }
}

bool holdsWithin(std::chrono::milliseconds patience, const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{2});
    }
    return true;
}

} // namespace roost::test
