#include "present/RoostWidgetModel.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

RoostWidgetModel model()
{
    return {.content = RoostWidgetContent::Waiting{},
            .now = Date{std::chrono::seconds{1'750'000'000}},
            .days = 14,
            .format = RoostFormat{{.locale = "de", .calendarTimeZone = "Europe/Berlin", .timeZone = "UTC"}},
            .baseURL = QUrl{QStringLiteral("https://roost.example")},
            .interactive = true};
}

TEST(RoostWidgetModel, EqualsOneOfTheSameMembers) { EXPECT_EQ(model(), model()); }

TEST(RoostWidgetModel, DiffersWithEachOfItsMembers)
{
    const auto differsBy = [](const auto& change) {
        RoostWidgetModel other = model();
        change(other);
        return !(other == model());
    };
    using Model = RoostWidgetModel;
    EXPECT_TRUE(differsBy([](Model& other) { other.content = RoostWidgetContent::SignedOut{}; }));
    EXPECT_TRUE(differsBy([](Model& other) { other.now += std::chrono::milliseconds{1}; }));
    EXPECT_TRUE(differsBy([](Model& other) { other.days = 7; }));
    EXPECT_TRUE(differsBy([](Model& other) { other.baseURL.setPath(QStringLiteral("/x")); }));
    EXPECT_TRUE(differsBy([](Model& other) { other.interactive = false; }));
    const auto withFormat = [&](RoostFormat::Settings settings) {
        return differsBy([&](Model& other) { other.format = RoostFormat{settings}; });
    };
    EXPECT_FALSE(withFormat({.locale = "de", .calendarTimeZone = "Europe/Berlin", .timeZone = "UTC"}));
    EXPECT_TRUE(withFormat({.locale = "fr", .calendarTimeZone = "Europe/Berlin", .timeZone = "UTC"}));
    EXPECT_TRUE(withFormat({.locale = "de", .calendarTimeZone = "Asia/Tokyo", .timeZone = "UTC"}));
    EXPECT_TRUE(withFormat({.locale = "de", .calendarTimeZone = "Europe/Berlin", .timeZone = "Asia/Tokyo"}));
}

} // namespace
} // namespace roost
