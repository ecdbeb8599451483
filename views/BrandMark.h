#pragma once

#include "present/BrandMarkCache.h"

#include <QColor>
#include <QPainter>
#include <QRectF>

#include <optional>
#include <string>

namespace roost {

/// The sign of a network in one colour: its mark, or a lettered badge when it has none. A plain value; it is
/// painted on the thread of the painter.
struct BrandMark {
    /// As the service names the network.
    std::string platform;
    /// The network's name for readers, from which the badge takes its letter.
    std::optional<std::string> label;
    /// The side of the square that it stands in, in the units of the painter.
    double size = 0;
    QColor color;

    /// What is painted, for a square with its upper left corner at the origin: the square, or what half the
    /// line of a badge's frame adds to it on all sides.
    QRectF extent(BrandMarkCache& cache) const;

    /// Paints the square with its upper left corner at `corner`. The painter's state is as before afterwards.
    void paint(QPainter& painter, QPointF corner, BrandMarkCache& cache) const;
};

} // namespace roost
