#include "programs/brisken-roost-views/Surfaces.h"

#include "views/BrandMark.h"

#include <QPainter>

#include <algorithm>

namespace roost {

namespace {

/// The sign of a network. What of it stands out of its square makes the square smaller, not the picture
/// larger.
QImage drawnMark(const RenderCommand& command, int pixels)
{
    QImage picture{pixels, pixels, QImage::Format_ARGB32_Premultiplied};
    if (picture.isNull()) {
        return picture;
    }
    picture.fill(command.background);
    BrandMarkCache cache;
    const BrandMark mark{command.platform, command.label, 1.0 * command.size, command.color};
    const QRectF extent = mark.extent(cache);
    const double factor = command.scale * command.size / extent.width();
    QPainter painter{&picture};
    painter.scale(factor, factor);
    mark.paint(painter, -extent.topLeft(), cache);
    return picture;
}

constexpr Surface all[] = {
    {"mark", drawnMark},
};

} // namespace

std::span<const Surface> surfaces() { return all; }

const Surface* surfaceNamed(std::string_view name)
{
    const auto* const found = std::ranges::find(all, name, &Surface::name);
    return found == std::end(all) ? nullptr : found;
}

} // namespace roost
