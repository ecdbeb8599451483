#include "views/BrandMark.h"

#include "present/BrandMarkData.h"
#include "present/SVGPath.h"
#include "views/PainterPath.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace roost;

constexpr int side = 96;
/// The mark stands in the middle of a picture with room around it.
constexpr int margin = 16;
constexpr int middle = margin + side / 2;

QImage canvas()
{
    QImage picture{side + 2 * margin, side + 2 * margin, QImage::Format_RGB32};
    picture.fill(Qt::white);
    return picture;
}

class BrandMarkTest : public testing::Test {
protected:
    QImage painted(const BrandMark& mark)
    {
        QImage picture = canvas();
        QPainter painter{&picture};
        mark.paint(painter, {margin, margin}, cache_);
        return picture;
    }

    QImage painted(const std::string& platform, const std::optional<std::string>& label = std::nullopt)
    {
        return painted(BrandMark{platform, label, side, Qt::black});
    }

    BrandMarkCache cache_;
};

/// The rectangle around all that is not white.
QRect inkOf(const QImage& picture)
{
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y).lightness() < 128) {
                ink |= QRect{x, y, 1, 1};
            }
        }
    }
    return ink;
}

/// The largest difference of any colour of any pixel.
int furthest(const QImage& one, const QImage& other)
{
    int most = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y);
            const QColor b = other.pixelColor(x, y);
            most = std::max({most, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                             std::abs(a.blue() - b.blue())});
        }
    }
    return most;
}

/// The part of a badge within its frame.
QImage inside(const QImage& picture)
{
    constexpr int frame = side / 8;
    return picture.copy(margin + frame, margin + frame, side - 2 * frame, side - 2 * frame);
}

TEST_F(BrandMarkTest, FillsTheMarkInItsColour)
{
    for (const auto& entry : BrandMarkData::paths) {
        QImage expected = canvas();
        QPainter painter{&expected};
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(margin, margin);
        painter.scale(side / 24.0, side / 24.0);
        painter.fillPath(painterPath(SVGPath::Parser{entry.data}.run()), QColor{200, 30, 70});
        painter.end();
        const std::string platform{entry.platform};
        const QImage mark = painted(BrandMark{platform, "Label", side, QColor{200, 30, 70}});
        EXPECT_LE(furthest(mark, expected), 32) << platform;
    }
}

TEST_F(BrandMarkTest, KeepsEveryMarkInItsSquare)
{
    for (const auto& entry : BrandMarkData::paths) {
        const QRect ink = inkOf(painted(std::string{entry.platform}));
        EXPECT_TRUE(QRect(margin, margin, side, side).contains(ink)) << entry.platform;
        EXPECT_GE(std::max(ink.width(), ink.height()), side * 8 / 10) << entry.platform;
        // In the middle, but for what sticks out of a sign to one side.
        EXPECT_NEAR(ink.center().x(), middle, 3) << entry.platform;
        EXPECT_NEAR(ink.center().y(), middle, 3) << entry.platform;
    }
}

TEST_F(BrandMarkTest, FramesTheBadgeOfAPlatformWithoutAMark)
{
    const QImage badge = painted("mastodon", "Zeta");
    const QRect ink = inkOf(badge);
    // Half of the line, 0.04 of the side, lies outside of the square.
    const int outside = static_cast<int>(0.04 * side);
    EXPECT_NEAR(ink.left(), margin - outside, 1);
    EXPECT_NEAR(ink.top(), margin - outside, 1);
    EXPECT_NEAR(ink.width(), side + 2 * outside, 2);
    EXPECT_NEAR(ink.height(), side + 2 * outside, 2);
    // The corners are round.
    EXPECT_EQ(badge.pixelColor(margin, margin), QColor{Qt::white});
}

TEST_F(BrandMarkTest, SetsTheLetterInTheMiddleOfTheBadge)
{
    for (const char* label : {"Zeta", "zeta", "ägypten", "ßharp", "\u0645\u0631", "😀", "1\uFE0F"}) {
        const QImage letter = inside(painted("mastodon", label));
        const QRect ink = inkOf(letter);
        ASSERT_FALSE(ink.isEmpty()) << label;
        EXPECT_NEAR(ink.center().x(), letter.rect().center().x(), 3) << label;
        EXPECT_NEAR(ink.center().y(), letter.rect().center().y(), 3) << label;
    }
}

/// How many pixels are dark.
int inkIn(const QImage& picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            count += picture.pixelColor(x, y).lightness() < 128 ? 1 : 0;
        }
    }
    return count;
}

TEST_F(BrandMarkTest, SetsTheLetterAtItsSizeInAHeavyFont)
{
    constexpr int large = 1000;
    constexpr double fontSize = 0.52 * side;
    QFont usual;
    usual.setPixelSize(large);
    const QImage letter = inside(painted("mastodon", "Hotel"));
    // Rounded fonts have capitals a little lower than others.
    EXPECT_NEAR(inkOf(letter).height(), QFontMetricsF{usual}.capHeight() / large * fontSize, 2.5);

    QImage light{letter.size(), QImage::Format_RGB32};
    light.fill(Qt::white);
    QPainter painter{&light};
    painter.setRenderHint(QPainter::Antialiasing);
    usual.setPixelSize(qRound(fontSize));
    painter.setFont(usual);
    painter.drawText(light.rect(), Qt::AlignCenter, QStringLiteral("H"));
    painter.end();
    EXPECT_GE(inkIn(letter), inkIn(light) * 5 / 4);
}

TEST_F(BrandMarkTest, FillsALetterWhereItsPartsOverlap)
{
    // The hook of this letter overlaps it in many fonts; no part of it encloses anything.
    constexpr int large = 400;
    QImage picture{large, large, QImage::Format_RGB32};
    picture.fill(Qt::white);
    QPainter painter{&picture};
    BrandMark{"mastodon", "Çelik", large, Qt::black}.paint(painter, {}, cache_);
    painter.end();

    std::vector<QPoint> open{{large / 8, large / 2}};
    while (!open.empty()) {
        const QPoint at = open.back();
        open.pop_back();
        if (picture.rect().contains(at) && picture.pixelColor(at).lightness() >= 128) {
            picture.setPixelColor(at, Qt::black);
            for (const QPoint step : {QPoint{1, 0}, QPoint{-1, 0}, QPoint{0, 1}, QPoint{0, -1}}) {
                open.push_back(at + step);
            }
        }
    }
    const QImage letter = picture.copy(large / 4, large / 4, large / 2, large / 2);
    EXPECT_EQ(inkIn(letter), letter.width() * letter.height());
}

TEST_F(BrandMarkTest, ReachesBeyondItsSquareWithHalfOfTheLineOfAFrame)
{
    EXPECT_EQ((BrandMark{"x", std::nullopt, 50, Qt::black}.extent(cache_)), QRectF(0, 0, 50, 50));
    EXPECT_EQ((BrandMark{"mastodon", std::nullopt, 50, Qt::black}.extent(cache_)), QRectF(-2, -2, 54, 54));
}

TEST_F(BrandMarkTest, SetsTheLetterOfTheLabelAndElseOfThePlatform)
{
    EXPECT_EQ(painted("mastodon", "Zeta"), painted("other", "zoo"));
    EXPECT_EQ(painted("mastodon"), painted("other", "Mars"));
    EXPECT_NE(inside(painted("mastodon", "Zeta")), inside(painted("mastodon")));
}

TEST_F(BrandMarkTest, PaintsBadgesInTheirColour)
{
    const QImage badge = painted(BrandMark{"mastodon", "Zeta", side, Qt::blue});
    for (int y = 0; y < badge.height(); ++y) {
        for (int x = 0; x < badge.width(); ++x) {
            const QColor color = badge.pixelColor(x, y);
            ASSERT_EQ(color.blue(), 255);
            ASSERT_EQ(color.red(), color.green());
        }
    }
}

TEST_F(BrandMarkTest, LeavesThePainterAsItWas)
{
    for (const char* platform : {"x", "mastodon"}) {
        QImage picture = canvas();
        QPainter painter{&picture};
        painter.setPen(Qt::red);
        const QTransform transform = painter.transform();
        const QFont font = painter.font();
        BrandMark{platform, std::nullopt, side, Qt::black}.paint(painter, {margin, margin}, cache_);
        EXPECT_EQ(painter.transform(), transform);
        EXPECT_EQ(painter.font(), font);
        EXPECT_EQ(painter.pen().color(), QColor{Qt::red});
        EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
    }
}

} // namespace
