#pragma once

#include <chrono>
#include <functional>

namespace roost::test {

/// Far longer than anything that a test waits for: it passes only when the test hangs.
inline constexpr std::chrono::seconds guardTime{30};

/// Runs the event loop until `condition` holds, which is asked each time the loop is about to sleep. False
/// when it did not hold within `guard`.
[[nodiscard]] bool runUntil(const std::function<bool()>& condition,
                            std::chrono::milliseconds guard = guardTime);

} // namespace roost::test
