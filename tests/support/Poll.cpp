#include "tests/support/Poll.h"

#include "tests/support/RunUntil.h"

#include <stdexcept>
#include <thread>

namespace roost::test {

void poll(const std::string& what, const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + guardTime;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("in vain: " + what);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{2});
    }
}

} // namespace roost::test
