#include "present/EllipticalArc.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace roost {

namespace {

using std::numbers::pi;

double squared(double value) { return value * value; }

/// The angle from `u` to `v`; positive in the direction in which angles grow.
double signedAngle(PathPoint u, PathPoint v)
{
    const double cosine = (u.x * v.x + u.y * v.y) / (std::hypot(u.x, u.y) * std::hypot(v.x, v.y));
    // Rounding can leave the cosine a little outside of what has an angle.
    const double angle = std::acos(std::clamp(cosine, -1.0, 1.0));
    return u.x * v.y < u.y * v.x ? -angle : angle;
}

/// The ellipse of an arc, and which part of it the arc is: from angle `start` on, `sweep` far.
struct Ellipse {
    PathPoint centre;
    double rx = 0;
    double ry = 0;
    /// The axis of `rx`, as the cosine and sine of its angle.
    PathPoint axis;
    double start = 0;
    double sweep = 0;

    /// From the frame of the ellipse, in which it is the unit circle, to the one of the path.
    PathPoint mapped(PathPoint p) const
    {
        return {axis.x * rx * p.x - axis.y * ry * p.y, axis.y * rx * p.x + axis.x * ry * p.y};
    }
};

std::optional<Ellipse> ellipseOf(PathPoint from, const EllipticalArc& arc)
{
    const double phi = arc.rotation * (pi / 180);
    Ellipse ellipse{.rx = std::abs(arc.rx), .ry = std::abs(arc.ry), .axis = {std::cos(phi), std::sin(phi)}};
    auto& [centre, rx, ry, axis, start, sweep] = ellipse;

    const PathPoint half = 0.5 * (from - arc.to);
    const PathPoint p{axis.x * half.x + axis.y * half.y, axis.x * half.y - axis.y * half.x};
    // The appendix divides (rx^2 ry^2 - d) by d = rx^2 p.y^2 + ry^2 p.x^2, which is lambda rx^2 ry^2: the
    // same without products of four lengths, which overflow early.
    const double lambda = squared(p.x / rx) + squared(p.y / ry);
    double coefficient = std::sqrt(std::max(0.0, 1 / lambda - 1));
    if (lambda > 1) {
        rx *= std::sqrt(lambda);
        ry *= std::sqrt(lambda);
    }
    if (arc.large == arc.sweep) {
        coefficient = -coefficient;
    }
    const PathPoint c{coefficient * rx * p.y / ry, -coefficient * ry * p.x / rx};
    centre = PathPoint{axis.x * c.x - axis.y * c.y, axis.y * c.x + axis.x * c.y} + 0.5 * (from + arc.to);

    const PathPoint startVector{(p.x - c.x) / rx, (p.y - c.y) / ry};
    const PathPoint endVector{(-p.x - c.x) / rx, (-p.y - c.y) / ry};
    start = signedAngle({1, 0}, startVector);
    sweep = signedAngle(startVector, endVector);
    if (!arc.sweep && sweep > 0) {
        sweep -= 2 * pi;
    } else if (arc.sweep && sweep < 0) {
        sweep += 2 * pi;
    }
    if (!std::isfinite(centre.x + centre.y + rx + ry + start + sweep)) {
        return std::nullopt;
    }
    return ellipse;
}

} // namespace

void addArc(VectorPath& path, PathPoint from, const EllipticalArc& arc)
{
    if (arc.to == from) {
        return;
    }
    const auto ellipse = arc.rx == 0 || arc.ry == 0 ? std::nullopt : ellipseOf(from, arc);
    if (!ellipse) {
        path.line(arc.to);
        return;
    }
    const int segments = std::max(1, static_cast<int>(std::ceil(std::abs(ellipse->sweep) / (pi / 2))));
    const double turn = ellipse->sweep / segments;
    const double handle = 4.0 / 3 * std::tan(turn / 4);
    PathPoint begin = from;
    for (int segment = 1; segment <= segments; ++segment) {
        const double angle = ellipse->start + (segment - 1) * turn;
        const double next = ellipse->start + segment * turn;
        const PathPoint tangent = ellipse->mapped({-std::sin(angle), std::cos(angle)});
        const PathPoint nextTangent = ellipse->mapped({-std::sin(next), std::cos(next)});
        // The arc ends exactly where it was told to, so that roundings do not add up along a path.
        const PathPoint end = segment == segments
                                  ? arc.to
                                  : ellipse->centre + ellipse->mapped({std::cos(next), std::sin(next)});
        path.cubic(begin + handle * tangent, end - handle * nextTangent, end);
        begin = end;
    }
}

} // namespace roost
