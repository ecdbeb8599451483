#include "tests/views/PathSheet.h"

#include "present/SVGPath.h"
#include "tests/support/ScratchFolder.h"
#include "views/PainterPath.h"

#include <QPainter>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace roost::test {

namespace {

constexpr double unitsPerCell = 24;
constexpr double strokeWidth = 0.9;
constexpr double white = 255;

int heightFor(std::size_t count)
{
    return static_cast<int>((count + PathSheet::columns - 1) / PathSheet::columns) * PathSheet::cell;
}

int valueAt(const QImage& picture, int x, int y) { return picture.constScanLine(y)[x]; }

/// How far the value at (x, y) of `one` is from all those that `other` has there and next to it.
int beyond(const QImage& one, const QImage& other, int x, int y, const QRect& cell)
{
    int least = static_cast<int>(white);
    int most = 0;
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            if (cell.contains(x + dx, y + dy)) {
                const int value = valueAt(other, x + dx, y + dy);
                least = std::min(least, value);
                most = std::max(most, value);
            }
        }
    }
    const int value = valueAt(one, x, y);
    return std::max({0, least - value, value - most});
}

} // namespace

std::string PathSheet::svg() const
{
    const std::string side = std::to_string(cell);
    std::string document = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                           std::to_string(columns * cell) + "\" height=\"" +
                           std::to_string(heightFor(paths.size())) +
                           "\"><rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>";
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const QRect place = cellOf(i);
        document += "<svg x=\"" + std::to_string(place.x()) + "\" y=\"" + std::to_string(place.y()) +
                    "\" width=\"" + side + "\" height=\"" + side + "\" viewBox=\"0 0 24 24\"><path ";
        document += ink == Ink::filled ? ""
                                       : "fill=\"none\" stroke=\"#000\" stroke-width=\"0.9\" "
                                         "stroke-linejoin=\"bevel\" ";
        document += "d=\"" + paths[i] + "\"/></svg>";
    }
    return document + "</svg>";
}

QImage PathSheet::painted(double shift) const
{
    QImage picture{columns * cell, heightFor(paths.size()), QImage::Format_Grayscale8};
    picture.fill(Qt::white);
    QPainter painter{&picture};
    painter.setRenderHint(QPainter::Antialiasing);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const QRect place = cellOf(i);
        painter.save();
        painter.setClipRect(place);
        painter.translate(place.x() + shift, place.y() + shift);
        painter.scale(cell / unitsPerCell, cell / unitsPerCell);
        const QPainterPath path = painterPath(SVGPath::Parser{paths[i]}.run());
        if (ink == Ink::filled) {
            painter.fillPath(path, Qt::black);
        } else {
            painter.strokePath(path, {Qt::black, strokeWidth, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin});
        }
        painter.restore();
    }
    return picture;
}

QRect PathSheet::cellOf(std::size_t number) const
{
    const int index = static_cast<int>(number);
    return {index % columns * cell, index / columns * cell, cell, cell};
}

Apart compare(const QImage& one, const QImage& other, const QRect& cell)
{
    int worst = 0;
    int sum = 0;
    for (int y = cell.top(); y <= cell.bottom(); ++y) {
        for (int x = cell.left(); x <= cell.right(); ++x) {
            worst = std::max({worst, beyond(one, other, x, y, cell), beyond(other, one, x, y, cell)});
            sum += std::abs(valueAt(one, x, y) - valueAt(other, x, y));
        }
    }
    return {worst / white, sum / white / (cell.width() * cell.height())};
}

QString rsvgConvert() { return QStandardPaths::findExecutable(QStringLiteral("rsvg-convert")); }

QImage drawnByRsvg(const std::string& svg)
{
    const ScratchFolder folder;
    const QString source = QString::fromStdString((folder / "sheet.svg").string());
    const QString target = QString::fromStdString((folder / "sheet.png").string());
    putBytes(folder / "sheet.svg", svg);
    constexpr int guard = 120'000;
    QProcess program;
    program.start(rsvgConvert(), {QStringLiteral("--output"), target, source});
    if (!program.waitForFinished(guard) || program.exitCode() != 0) {
        return {};
    }
    return QImage{target}.convertToFormat(QImage::Format_Grayscale8);
}

} // namespace roost::test
