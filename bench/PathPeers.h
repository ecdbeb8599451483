#pragma once

#include <string>
#include <vector>

namespace roost::bench {

/// The smallest upright rectangle around a path.
struct Bounds {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// A document with these paths, the first of the identifier "path". Its reading is what can be measured of
/// the peers, which keep their parsers of path data to themselves.
std::string svgDocument(const std::vector<std::string>& paths);

/// Qt's SVG renderer.
namespace qtSvgPeer {
bool load(const std::string& document);
Bounds bounds(const std::string& document);
} // namespace qtSvgPeer

/// The library behind rsvg-convert.
namespace librsvgPeer {
bool load(const std::string& document);
Bounds bounds(const std::string& document);
} // namespace librsvgPeer

} // namespace roost::bench
