#pragma once

#include "present/VectorPath.h"

namespace roost {

/// An arc as path data give it, in the terms of SVG 2, section 9.3.8: the part of an ellipse between where
/// the path is and `to`.
struct EllipticalArc {
    /// The half axes; their signs mean nothing.
    double rx = 0;
    double ry = 0;
    /// From the x axis to the axis of `rx`, in degrees.
    double rotation = 0;
    /// The longer of the two ways around the ellipse.
    bool large = false;
    /// The way on which angles grow: clockwise, as the y axis points down.
    bool sweep = false;
    PathPoint to;
};

/// Adds `arc`, which begins at `from`, to `path` as cubic curves of at most a quarter turn each (SVG 2,
/// appendix B.2). Nothing when it ends where it begins; a line when a radius is 0, or when the numbers are
/// too large or too small for the ellipse to be found; radii that do not reach are scaled up until they do.
void addArc(VectorPath& path, PathPoint from, const EllipticalArc& arc);

} // namespace roost
