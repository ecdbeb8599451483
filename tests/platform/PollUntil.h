#pragma once

#include "tests/support/RunUntil.h"

#include <QTimer>

namespace roost::test {

/// `runUntil` for what happens outside of the event loop, in a file say: the condition is asked again and
/// again.
[[nodiscard]] inline bool pollUntil(const std::function<bool()>& condition,
                                    std::chrono::milliseconds guard = guardTime)
{
    QTimer tick;
    tick.start(std::chrono::milliseconds(5));
    return runUntil(condition, guard);
}

} // namespace roost::test
