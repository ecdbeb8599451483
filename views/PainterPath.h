#pragma once

#include "present/VectorPath.h"

#include <QPainterPath>

namespace roost {

/// `path` for a `QPainter`, with the same elements and the non-zero fill rule. Elements with numbers that are
/// not finite are left out.
QPainterPath painterPath(const VectorPath& path);

} // namespace roost
