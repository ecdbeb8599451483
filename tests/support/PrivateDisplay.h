#pragma once

#include "tests/support/GuardedProcess.h"
#include "tests/support/ScopedVariable.h"

namespace roost::test {

/// An X server without a screen (Xvfb, 800 by 600 pixels), which is the display of this process, and of those
/// that it starts, while this lives. Made after a `PrivateBus`, whose session has none. Main thread.
class PrivateDisplay {
public:
    PrivateDisplay();

    /// Clicks with the left button where that is. Returns when the server has been told.
    void click(int x, int y) const;

private:
    GuardedProcess server_;
    ScopedVariable variable_;
};

} // namespace roost::test
