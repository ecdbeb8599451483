#pragma once

#include "programs/brisken-roost-views/RenderCommand.h"

#include <QImage>

#include <span>
#include <string_view>

namespace roost {

/// Something of the program that can be drawn by itself.
struct Surface {
    /// As the command line names it.
    std::string_view name;
    /// Draws it, `pixels` x `pixels` large; a null image when there is no memory for that.
    QImage (*drawn)(const RenderCommand& command, int pixels);
};

/// All there are. Constant.
std::span<const Surface> surfaces();

/// The surface of that name; null for none.
const Surface* surfaceNamed(std::string_view name);

} // namespace roost
