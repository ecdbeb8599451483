#pragma once

#include "programs/common/CommandResult.h"

#include <QColor>
#include <QString>

#include <optional>
#include <string>

namespace roost {

/// `render`: one surface of the program, drawn into a PNG file.
struct RenderCommand {
    /// One of `surfaces()`.
    std::string surface;
    std::string platform;
    std::optional<std::string> label;
    /// The side of the picture in units, of which each is `scale` pixels.
    int size = 0;
    double scale = 1;
    QColor color = Qt::black;
    QColor background = Qt::transparent;
    /// A path, or "-" for standard output.
    QString output;

    bool operator==(const RenderCommand&) const = default;
};

/// Draws it, and puts the picture in the place of the file in one step, or into the result's output. The same
/// command gives the same bytes, as long as libraries and fonts are the same. Needs a `QGuiApplication`; on
/// the main thread.
CommandResult runRender(const RenderCommand& command);

} // namespace roost
