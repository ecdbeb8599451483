#pragma once

#include "present/VectorPath.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace roost::SVGPath {

/// Reads path data, the language of SVG 2, section 9.3, into a path. It is a little more forgiving about
/// separators (any run of tabs, line feeds, blanks and commas, anywhere) and stricter about carriage returns,
/// which are none. There are no errors: what cannot be read ends the path, and what was drawn before stays.
///
/// Takes time and memory in proportion to the data, and does not recurse.
class Parser {
public:
    /// `data` must stay as they are until the path has been read. They are UTF-8; what is not ASCII is no
    /// path data.
    explicit Parser(std::string_view data) : scalars_{data} {}

    /// Reads all the data. Once per parser.
    VectorPath run();

private:
    void skipSeparators();
    bool skipDigits();
    /// A decimal number; nothing, and nothing is consumed, where there is none or one too large for a double.
    std::optional<double> number();
    /// "0" or "1", a single character.
    std::optional<bool> flag();
    /// As many points, each given from `base` on.
    template <std::size_t count>
    std::optional<std::array<PathPoint, count>> points(PathPoint base);

    /// Reads the arguments of `command` and draws; false when they cannot be read.
    bool apply(char command);
    bool applyArc(PathPoint base);
    void lineTo(PathPoint to);
    void quadTo(PathPoint control, PathPoint to);
    void cubicTo(PathPoint control1, PathPoint control2, PathPoint to);
    void closeSubpath();
    void forgetControls();
    /// The point on the other side of `current_`; `current_` itself for none.
    PathPoint reflected(const std::optional<PathPoint>& control) const;

    std::string_view scalars_;
    std::size_t index_ = 0;
    VectorPath path_;
    PathPoint current_;
    /// Where a close leads back to.
    PathPoint subpathStart_;
    /// What smooth curves continue, while the command before was one of their kind.
    std::optional<PathPoint> lastCubicControl_;
    std::optional<PathPoint> lastQuadControl_;
};

/// `path` as path data of absolute commands, in the same letters for every locale: the form in which paths
/// get to QML, where a `ShapePath` with `fillRule: ShapePath.WindingFill` takes it by `PathSvg { path: … }`.
/// From it the parser reads an equal path, as long as all its numbers are finite; other numbers are no path
/// data.
std::string text(const VectorPath& path);

} // namespace roost::SVGPath
