#pragma once

#include "present/SVGPath.h"

#include <ostream>
#include <string_view>
#include <vector>

namespace roost {

/// For the messages of failing tests: the path as data.
inline void PrintTo(const VectorPath& path, std::ostream* stream) { *stream << SVGPath::text(path); }

namespace test {

using Move = VectorPath::Move;
using Line = VectorPath::Line;
using Quad = VectorPath::Quad;
using Cubic = VectorPath::Cubic;
using Close = VectorPath::Close;
using Elements = std::vector<VectorPath::Element>;

inline VectorPath parsed(std::string_view data) { return SVGPath::Parser{data}.run(); }

inline Elements elementsOf(std::string_view data) { return parsed(data).elements(); }

/// Where the last element of `data`, a move or a line, ends.
inline PathPoint endOf(std::string_view data)
{
    const VectorPath::Element last = elementsOf(data).back();
    const Line* const line = std::get_if<Line>(&last);
    return line != nullptr ? line->to : std::get<Move>(last).to;
}

} // namespace test
} // namespace roost
