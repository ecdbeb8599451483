#include "platform/IniSettings.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/ScratchFolder.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

class IniSettingsTest : public testing::Test {
protected:
    test::ScratchFolder scratch;
    const std::filesystem::path file = scratch / "config" / "world.brisken.roost.mac" / "settings.ini";
    IniSettings settings{file};
};

TEST_F(IniSettingsTest, LieInTheFolderForSettings)
{
    const std::filesystem::path folder = scratch / "config";
    const test::ScopedVariable config{"XDG_CONFIG_HOME", QByteArray::fromStdString(folder.string())};
    EXPECT_EQ(IniSettings::location(), file);
}

TEST_F(IniSettingsTest, AreEmptyWithoutAFileAndMakeNone)
{
    EXPECT_EQ(settings.text("selectedProfileId"), std::nullopt);
    EXPECT_FALSE(settings.boolean("notify.milestones"));
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(IniSettingsTest, WriteKeysAsTheyAreNamed)
{
    settings.setBoolean("notify.milestones", false);
    settings.setText("selectedProfileId", "p-1");
    EXPECT_EQ(test::bytesOf(file), "[General]\nnotify.milestones=false\nselectedProfileId=p-1\n");
    settings.setText("selectedProfileId", std::nullopt);
    EXPECT_EQ(test::bytesOf(file), "[General]\nnotify.milestones=false\n");
}

TEST_F(IniSettingsTest, GiveBackWhatWasStoredInAnotherRun)
{
    for (const std::string& text :
         {std::string{"p-1"}, std::string{""}, std::string{"a,b;c=d"}, std::string{"@Invalid()"},
          std::string{" \"ü\" 😀 \\n\n%20"}, std::string{"true"}}) {
        settings.setText("selectedProfileId", text);
        EXPECT_EQ(IniSettings{file}.text("selectedProfileId"), text);
    }
}

TEST_F(IniSettingsTest, SeeAndKeepWhatAnotherProcessStores)
{
    settings.setBoolean("notify.milestones", false);
    EXPECT_FALSE(settings.boolean("notify.followers"));
    EXPECT_EQ(test::inChildProcess([this] {
                  IniSettings other{file};
                  other.setBoolean("notify.followers", true);
                  return std::string{"done"};
              }),
              "done");
    EXPECT_TRUE(settings.boolean("notify.followers"));
    settings.setBoolean("notify.bestPost", true);
    const IniSettings next{file};
    EXPECT_EQ(next.text("notify.followers"), "true");
    EXPECT_EQ(next.text("notify.milestones"), "false");
}

TEST_F(IniSettingsTest, AreEmptyWithAFileThatIsNone)
{
    std::filesystem::create_directories(file.parent_path());
    test::putBytes(file, std::string("\0\xFF[[[=\n=", 8));
    EXPECT_EQ(settings.text("notify.milestones"), std::nullopt);
    EXPECT_FALSE(settings.boolean("notify.milestones"));
}

} // namespace
} // namespace roost
