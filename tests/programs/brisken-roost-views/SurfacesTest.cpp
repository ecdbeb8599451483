#include "programs/brisken-roost-views/Surfaces.h"

#include <gtest/gtest.h>

#include <set>

namespace roost {
namespace {

// Marks are drawn without fonts, and so without an application; the program's own test draws badges.
RenderCommand markOf(const std::string& platform)
{
    return {.surface = "mark", .platform = platform, .size = 24};
}

TEST(Surfaces, AreFoundByTheirNames)
{
    std::set<std::string_view> names;
    for (const Surface& surface : surfaces()) {
        EXPECT_EQ(surfaceNamed(surface.name), &surface);
        EXPECT_TRUE(names.insert(surface.name).second) << surface.name;
    }
    EXPECT_EQ(surfaceNamed("moon"), nullptr);
    EXPECT_EQ(surfaceNamed(""), nullptr);
}

TEST(MarkSurface, FillsThePictureWithTheMark)
{
    const QImage small = surfaceNamed("mark")->drawn(markOf("linkedin"), 24);
    EXPECT_EQ(small.size(), QSize(24, 24));
    EXPECT_EQ(small.pixelColor(0, 0), QColor{Qt::transparent});
    EXPECT_EQ(small.pixelColor(12, 3), QColor{Qt::black});

    RenderCommand command = markOf("linkedin");
    command.scale = 2.5;
    command.color = QColor{10, 20, 30};
    command.background = QColor{200, 210, 220};
    const QImage large = surfaceNamed("mark")->drawn(command, 60);
    EXPECT_EQ(large.size(), QSize(60, 60));
    EXPECT_EQ(large.pixelColor(0, 0), command.background);
    EXPECT_EQ(large.pixelColor(59, 59), command.background);
    EXPECT_EQ(large.pixelColor(30, 8), command.color);
    EXPECT_EQ(large.pixelColor(30, 53), command.color);
}

} // namespace
} // namespace roost
