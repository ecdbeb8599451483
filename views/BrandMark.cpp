#include "views/BrandMark.h"

#include "present/BrandBadge.h"
#include "present/BrandMarkShape.h"
#include "views/PainterPath.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPen>
#include <QStringList>

namespace roost {

namespace {

/// Rounded fonts that desktops tend to have; where there is none of them, the heavy cut of the usual one.
QFont badgeFont(int pixelSize)
{
    QFont font;
    font.setFamilies(QStringList{QStringLiteral("Nunito"), QStringLiteral("M PLUS Rounded 1c"),
                                 QStringLiteral("Varela Round")} +
                     font.families());
    font.setWeight(QFont::Black);
    font.setPixelSize(pixelSize);
    return font;
}

void paintBadge(QPainter& painter, const BrandBadge& badge, double size, const QColor& color)
{
    painter.strokePath(painterPath(badge.frame), QPen{color, badge.lineWidth});

    // Font sizes are whole pixels: the letter is set large and then scaled to its size, which may be
    // anything.
    constexpr int large = 128;
    const QFont font = badgeFont(large);
    const QString letter = QString::fromStdString(badge.letter);
    const QRectF ink = QFontMetricsF{font}.tightBoundingRect(letter);
    painter.translate(size / 2, size / 2);
    painter.scale(badge.fontSize / large, badge.fontSize / large);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(-ink.center(), letter);
}

} // namespace

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
