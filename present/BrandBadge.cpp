#include "present/BrandBadge.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <array>
#include <cmath>
#include <memory>
#include <numbers>

namespace roost {

namespace {

/// One corner at the origin between the positive axes, as points from the y axis around to the x axis: a
/// curve that leaves the side without curvature and reaches the circle with its curvature, the circle's arc,
/// and the same curve again.
struct Corner {
    /// Start, then three points per curve.
    std::array<PathPoint, 10> points;
};

Corner cornerOf(double radius)
{
    // How far the circle's arc is cut back at either end.
    constexpr double cut = 27 * std::numbers::pi / 180;
    const double tangent = radius * std::tan(cut / 2);
    // What makes the curvature at the end of a cubic curve, 2/3 |a x b| / |b|^3 for its last two legs, 1 /
    // radius.
    const double leg = 1.5 * tangent * tangent / (radius * std::sin(cut));

    const PathPoint arcStart{radius * (1 - std::cos(cut)), radius * (1 - std::sin(cut))};
    const PathPoint arcEnd{arcStart.y, arcStart.x};
    const double onSide = arcStart.y + tangent * std::cos(cut);
    const double handle = 4.0 / 3 * radius * std::tan((std::numbers::pi / 2 - 2 * cut) / 4);
    const PathPoint along{handle * std::sin(cut), -handle * std::cos(cut)};

    return {{PathPoint{0, onSide + 3 * leg},
             {0, onSide + leg},
             {0, onSide},
             arcStart,
             arcStart + along,
             arcEnd + PathPoint{along.y, along.x},
             arcEnd,
             {onSide, 0},
             {onSide + leg, 0},
             {onSide + 3 * leg, 0}}};
}

} // namespace

VectorPath continuousSquare(double size, double radius)
{
    const Corner corner = cornerOf(radius);
    VectorPath path;
    for (int side = 0; side < 4; ++side) {
        const auto turned = [&](PathPoint p) -> PathPoint {
            for (int quarter = 0; quarter < side; ++quarter) {
                p = {size - p.y, p.x};
            }
            return p;
        };
        const auto& points = corner.points;
        if (side == 0) {
            path.move(points[0]);
        } else {
            path.line(turned(points[0]));
        }
        for (std::size_t curve = 0; curve < 3; ++curve) {
            path.cubic(turned(points[3 * curve + 1]), turned(points[3 * curve + 2]),
                       turned(points[3 * curve + 3]));
        }
    }
    path.close();
    return path;
}

std::string badgeLetter(std::string_view text)
{
    const auto whole = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters{
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status)};
    // Without its data ICU counts nothing; a code point is the next best then.
    std::int32_t end = whole.moveIndex32(0, 1);
    if (U_SUCCESS(status)) {
        characters->setText(whole);
        const std::int32_t next = characters->next();
        end = next == icu::BreakIterator::DONE ? 0 : next;
    }
    std::string letter;
    whole.tempSubString(0, end).toUpper(icu::Locale::getRoot()).toUTF8String(letter);
    return letter;
}

BrandBadge brandBadge(std::string_view platform, const std::optional<std::string>& label, double size)
{
    const bool hasLabel = label && !label->empty();
    return {.frame = continuousSquare(size, 0.28 * size),
            .lineWidth = 0.08 * size,
            .fontSize = 0.52 * size,
            .letter = badgeLetter(hasLabel ? std::string_view{*label} : platform)};
}

} // namespace roost
