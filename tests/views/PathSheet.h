#pragma once

#include <QImage>

#include <string>
#include <vector>

namespace roost::test {

/// A picture of many paths, in cells of `cell` x `cell` pixels that show 24 x 24 units each and are clipped:
/// in black on white, `columns` to a row.
struct PathSheet {
    static constexpr int cell = 64;
    static constexpr int columns = 20;

    enum class Ink { filled, stroked };

    std::vector<std::string> paths;
    Ink ink = Ink::filled;

    /// As an SVG document that holds the paths as they are.
    std::string svg() const;

    /// As read by our parser and painted by Qt, all paths moved by that many pixels.
    QImage painted(double shift = 0) const;

    /// The cell of the path with that number.
    QRect cellOf(std::size_t number) const;
};

/// How far apart two pictures of a path are.
struct Apart {
    /// Of the pixels in which either is neither black nor white, the share of ink, from 0 to 1, that one has
    /// more or less than the other, on average over them and those that differ otherwise. An edge that lies a
    /// tenth of a pixel elsewhere makes about a tenth.
    double onEdges = 0;
    /// How many pixels of either are no mixture of what the other has there and next to it, by a quarter of
    /// the way from black to white: no smoothing of an edge explains them.
    int strays = 0;
};

/// Compares one cell of two pictures of a sheet.
Apart compare(const QImage& one, const QImage& other, const QRect& cell);

/// The program that draws SVG documents to compare with; empty where there is none.
QString rsvgConvert();

/// What that program draws for `svg`; a null image when it fails.
QImage drawnByRsvg(const std::string& svg);

} // namespace roost::test
