#include "tests/support/PrivateDisplay.h"

#include <stdexcept>

namespace roost::test {

PrivateDisplay::PrivateDisplay()
    : server_({"Xvfb", "-displayfd", "1", "-screen", "0", "800x600x24", "-nolisten", "tcp"}),
      variable_("DISPLAY", QByteArray::fromStdString(":" + server_.line()))
{
}

void PrivateDisplay::click(int x, int y) const
{
    // It says where the pointer is when all of that is done.
    GuardedProcess pointer(
        {"xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", "1", "getmouselocation"});
    if (pointer.line().empty()) {
        throw std::runtime_error("nobody can click on this display");
    }
}

} // namespace roost::test
