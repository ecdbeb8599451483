#include "model/Settings.h"

#include "tests/support/MemorySettings.h"

#include <gmock/gmock.h>

#include <array>

namespace roost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class SettingsTest : public testing::Test {
protected:
    static constexpr std::array<Settings::Default, 2> table{{{"on", true}, {"off", false}}};

    test::MemorySettings settings;
};

TEST_F(SettingsTest, AreFalseWithoutAChoiceAndADefault)
{
    EXPECT_FALSE(settings.boolean("on"));
    EXPECT_EQ(settings.text("on"), std::nullopt);
}

TEST_F(SettingsTest, HaveTheirDefaultsUntilTheUserChooses)
{
    settings.registerDefaults(table);
    EXPECT_TRUE(settings.boolean("on"));
    EXPECT_FALSE(settings.boolean("off"));
    settings.setBoolean("on", false);
    settings.setBoolean("off", true);
    EXPECT_FALSE(settings.boolean("on"));
    EXPECT_TRUE(settings.boolean("off"));
    settings.registerDefaults(table);
    EXPECT_FALSE(settings.boolean("on"));
}

TEST_F(SettingsTest, TakeTheLatestDefault)
{
    settings.registerDefaults(table);
    settings.registerDefaults(std::array{Settings::Default{"on", false}});
    EXPECT_FALSE(settings.boolean("on"));
}

TEST_F(SettingsTest, StoreNoDefaults)
{
    settings.registerDefaults(table);
    EXPECT_THAT(settings.file, IsEmpty());
    EXPECT_EQ(settings.text("on"), std::nullopt);
}

TEST_F(SettingsTest, StoreChoicesThatEqualTheDefault)
{
    settings.registerDefaults(table);
    settings.setBoolean("on", true);
    EXPECT_THAT(settings.file, ElementsAre(Pair("on", "true")));
}

TEST_F(SettingsTest, ReadTheTwoWaysInWhichPeopleWriteBooleans)
{
    for (const char* text : {"true", "1"}) {
        settings.file["key"] = text;
        EXPECT_TRUE(settings.boolean("key")) << text;
    }
    settings.registerDefaults(table);
    for (const char* text : {"false", "0"}) {
        settings.file["on"] = text;
        EXPECT_FALSE(settings.boolean("on")) << text;
    }
}

TEST_F(SettingsTest, TakeATextThatIsNoBooleanForNoChoice)
{
    settings.registerDefaults(table);
    for (const char* text : {"", "yes", "no", "False", " false", "falsely", "2"}) {
        settings.file = {{"on", text}, {"off", text}};
        EXPECT_TRUE(settings.boolean("on")) << text;
        EXPECT_FALSE(settings.boolean("off")) << text;
    }
}

TEST_F(SettingsTest, KeepTextsAndForgetThem)
{
    settings.setText("profile", "a=1; \"ü\"");
    EXPECT_EQ(settings.text("profile"), "a=1; \"ü\"");
    settings.setText("profile", "");
    EXPECT_EQ(settings.text("profile"), "");
    settings.setText("profile", std::nullopt);
    EXPECT_EQ(settings.text("profile"), std::nullopt);
    EXPECT_THAT(settings.file, IsEmpty());
}

} // namespace
} // namespace roost
