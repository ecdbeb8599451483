#include "views/BrandMark.h"

#include <QGuiApplication>
#include <QImage>

#include <array>
#include <iostream>

namespace {

using namespace roost;

constexpr std::array sizes{512, 64, 24, 14};
constexpr int gap = 32;
/// One of each mark, and two badges.
constexpr std::array platforms{"instagram", "tiktok",    "youtube",  "x",        "linkedin", "threads",
                               "bluesky",   "pinterest", "facebook", "telegram", "Zeta",     "مرحبا"};
constexpr int rows = static_cast<int>(platforms.size()) / 2;

/// All sizes of a mark in a row.
int width()
{
    int sum = gap;
    for (const int size : sizes) {
        sum += size + gap;
    }
    return sum;
}

void paintHalf(QPainter& painter, int left, const QColor& paper, const QColor& ink)
{
    constexpr int height = sizes.front() + gap;
    painter.fillRect(left, 0, 2 * width(), rows * height + gap, paper);
    BrandMarkCache cache;
    for (int i = 0; i < static_cast<int>(platforms.size()); ++i) {
        int x = left + gap + i % 2 * width();
        const int y = gap + i / 2 * height;
        for (const int size : sizes) {
            const BrandMark mark{platforms[static_cast<std::size_t>(i)], std::nullopt,
                                 static_cast<double>(size), ink};
            mark.paint(painter, QPointF(x, y), cache);
            x += size + gap;
        }
    }
}

} // namespace

/// Writes a picture of every mark at several sizes, dark on light and light on dark, to the given file:
///
///     cmake --build --preset dev --target mark-sheet
///     build/dev/tests/views/mark-sheet docs/pictures/marks.png
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::cerr << "Usage: mark-sheet FILE\n";
        return 2;
    }
    QImage sheet{4 * width(), rows * (sizes.front() + gap) + gap, QImage::Format_Grayscale8};
    QPainter painter{&sheet};
    paintHalf(painter, 0, Qt::white, QColor{0x22, 0x22, 0x22});
    paintHalf(painter, 2 * width(), QColor{0x1c, 0x1c, 0x1c}, QColor{0xee, 0xee, 0xee});
    painter.end();
    constexpr int smallest = 0;
    return sheet.save(QString::fromLocal8Bit(argv[1]), "PNG", smallest) ? 0 : 1;
}
