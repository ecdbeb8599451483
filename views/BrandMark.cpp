#include "views/BrandMark.h"

#include "present/BrandBadge.h"
#include "present/BrandMarkShape.h"
#include "views/PainterPath.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPen>
#include <QRawFont>
#include <QStringList>
#include <QTextLayout>

#include <algorithm>
#include <array>

namespace roost {

namespace {

/// Rounded fonts with a heavy cut that desktops tend to have; where there is none of them, the heaviest up to
/// that of the usual one.
QFont badgeFont(int pixelSize)
{
    QFont font;
    font.setFamilies(QStringList{QStringLiteral("Nunito"), QStringLiteral("M PLUS Rounded 1c")} +
                     font.families());
    font.setWeight(QFont::ExtraBold);
    font.setPixelSize(pixelSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

/// Whether the font that has `letter` has pictures of its own colours instead of outlines: an emoji.
bool isPicture(const QFont& font, const QString& letter)
{
    QTextLayout layout{letter, font};
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    return std::ranges::any_of(layout.glyphRuns(), [](const QGlyphRun& run) {
        return std::ranges::any_of(std::array{"CBDT", "COLR", "sbix", "SVG "}, [&run](const char* table) {
            return !run.rawFont().fontTable(table).isEmpty();
        });
    });
}

void paintBadge(QPainter& painter, const BrandBadge& badge, double size, const QColor& color)
{
    painter.strokePath(painterPath(badge.frame), QPen{color, badge.lineWidth});

    // Font sizes are whole pixels: the letter is set large and then scaled to its size, which may be
    // anything.
    constexpr int large = 128;
    const QFont font = badgeFont(large);
    const QString letter = QString::fromStdString(badge.letter);
    painter.translate(size / 2, size / 2);
    painter.scale(badge.fontSize / large, badge.fontSize / large);
    if (isPicture(font, letter)) {
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(-QFontMetricsF{font}.tightBoundingRect(letter).center(), letter);
        return;
    }
    // An outline is smoothed like the marks, not as the desktop wants its texts: neither on a grid nor with
    // coloured edges.
    QPainterPath outline;
    outline.addText({}, font, letter);
    outline.setFillRule(Qt::WindingFill);
    outline.translate(-outline.boundingRect().center());
    painter.fillPath(outline, color);
}

} // namespace

QRectF BrandMark::extent(BrandMarkCache& cache) const
{
    const double outside =
        cache.path(platform) != nullptr ? 0 : brandBadge(platform, label, size).lineWidth / 2;
    return QRectF{0, 0, size, size}.adjusted(-outside, -outside, outside, outside);
}

void BrandMark::paint(QPainter& painter, QPointF corner, BrandMarkCache& cache) const
{
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.translate(corner);
    const VectorPath mark = BrandMarkShape{platform}.path({0, 0, size, size}, cache);
    if (mark.isEmpty()) {
        paintBadge(painter, brandBadge(platform, label, size), size, color);
    } else {
        painter.fillPath(painterPath(mark), color);
    }
    painter.restore();
}

} // namespace roost
