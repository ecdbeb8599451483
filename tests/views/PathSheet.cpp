#include "tests/views/PathSheet.h"

#include "present/SVGPath.h"
#include "tests/support/ScratchFolder.h"
#include "views/PainterPath.h"

#include <QPainter>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace roost::test {

namespace {

constexpr double unitsPerCell = 24;
constexpr double strokeWidth = 0.9;
constexpr int white = 255;

int heightFor(std::size_t count)
{
    return static_cast<int>((count + PathSheet::columns - 1) / PathSheet::columns) * PathSheet::cell;
}

int valueAt(const QImage& picture, int x, int y) { return picture.constScanLine(y)[x]; }

/// Fills `path` in a cell. Qt smooths by adding areas up, and so counts an edge twice that is drawn twice;
/// here it paints many times as large without smoothing, and what makes a pixel is counted.
void paintCell(QImage& picture, const QRect& cell, const QPainterPath& path, double shift)
{
    constexpr int samples = 8;
    QImage large{cell.size() * samples, QImage::Format_Grayscale8};
    large.fill(Qt::white);
    QPainter painter{&large};
    painter.scale(samples, samples);
    painter.translate(shift, shift);
    painter.scale(cell.width() / unitsPerCell, cell.height() / unitsPerCell);
    painter.fillPath(path, Qt::black);
    painter.end();
    for (int y = 0; y < cell.height(); ++y) {
        uchar* const line = picture.scanLine(cell.y() + y) + cell.x();
        for (int x = 0; x < cell.width(); ++x) {
            int sum = 0;
            for (int row = 0; row < samples; ++row) {
                const uchar* const first = large.constScanLine(y * samples + row) + x * samples;
                sum = std::accumulate(first, first + samples, sum);
            }
            line[x] = static_cast<uchar>(sum / (samples * samples));
        }
    }
}

/// How far the value at (x, y) of `one` is from all those that `other` has there and next to it.
int beyond(const QImage& one, const QImage& other, int x, int y, const QRect& cell)
{
    int least = white;
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
                                         "stroke-linecap=\"round\" stroke-linejoin=\"round\" ";
        document += "d=\"" + paths[i] + "\"/></svg>";
    }
    return document + "</svg>";
}

QImage PathSheet::painted(double shift) const
{
    QImage picture{columns * cell, heightFor(paths.size()), QImage::Format_Grayscale8};
    picture.fill(Qt::white);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const QPainterPath path = painterPath(SVGPath::Parser{paths[i]}.run());
        if (ink == Ink::filled) {
            paintCell(picture, cellOf(i), path, shift);
        } else {
            const QPen pen{Qt::black, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
            paintCell(picture, cellOf(i), QPainterPathStroker{pen}.createStroke(path), shift);
        }
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
    constexpr int quarter = 64;
    int strays = 0;
    int differences = 0;
    int edges = 0;
    for (int y = cell.top(); y <= cell.bottom(); ++y) {
        for (int x = cell.left(); x <= cell.right(); ++x) {
            strays +=
                std::max(beyond(one, other, x, y, cell), beyond(other, one, x, y, cell)) > quarter ? 1 : 0;
            const int a = valueAt(one, x, y);
            const int b = valueAt(other, x, y);
            differences += std::abs(a - b);
            edges += a != b || (a != 0 && a != white) ? 1 : 0;
        }
    }
    return {edges == 0 ? 0 : static_cast<double>(differences) / white / edges, strays};
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
