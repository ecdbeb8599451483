#include "views/PainterPath.h"

#include <cmath>

namespace roost {

namespace {

QPointF pointOf(PathPoint point) { return {point.x, point.y}; }

template <class... Points>
bool areFinite(Points... points)
{
    return (... && (std::isfinite(points.x) && std::isfinite(points.y)));
}

struct Adder {
    QPainterPath& result;

    void operator()(const VectorPath::Move& move) const
    {
        if (areFinite(move.to)) {
            result.moveTo(pointOf(move.to));
        }
    }
    void operator()(const VectorPath::Line& line) const
    {
        if (areFinite(line.to)) {
            result.lineTo(pointOf(line.to));
        }
    }
    void operator()(const VectorPath::Quad& quad) const
    {
        if (areFinite(quad.control, quad.to)) {
            result.quadTo(pointOf(quad.control), pointOf(quad.to));
        }
    }
    void operator()(const VectorPath::Cubic& cubic) const
    {
        if (areFinite(cubic.control1, cubic.control2, cubic.to)) {
            result.cubicTo(pointOf(cubic.control1), pointOf(cubic.control2), pointOf(cubic.to));
        }
    }
    void operator()(const VectorPath::Close&) const { result.closeSubpath(); }
};

} // namespace

QPainterPath painterPath(const VectorPath& path)
{
    QPainterPath result;
    result.setFillRule(Qt::WindingFill);
    path.visit(Adder{result});
    return result;
}

} // namespace roost
