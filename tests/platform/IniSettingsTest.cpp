#include "platform/IniSettings.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <array>

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

TEST_F(IniSettingsTest, LoseNothingThatTwoProcessesStoreAtOnce)
{
    constexpr int count = 20;
    const auto storeAll = [this](const std::string& who) {
        IniSettings mine{file};
        for (int i = 0; i < count; ++i) {
            mine.setText(who + std::to_string(i), who);
        }
    };
    test::ChildProcess other{[&storeAll](const test::ChildProcess::Voice&) { storeAll("child"); }};
    storeAll("parent");
    other.wait();
    ASSERT_EQ(other.signal(), 0);
    for (const std::string who : {"child", "parent"}) {
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(settings.text(who + std::to_string(i)), who) << i;
        }
    }
    // Nothing is left beside the file: no lock, no half of it.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator{file.parent_path()}, {}), 1);
}

TEST_F(IniSettingsTest, ReadWhatPeopleWriteByHand)
{
    std::filesystem::create_directories(file.parent_path());
    test::putBytes(file, "; mine\r\n[General]\r\nnotify.milestones = false \r\nselectedProfileId=a,b\r\n"
                         "notify.followers=true,false\r\n");
    EXPECT_EQ(settings.text("notify.milestones"), "false");
    EXPECT_EQ(settings.text("selectedProfileId"), "a,b");
    settings.registerDefaults(std::array{Settings::Default{"notify.followers", true}});
    EXPECT_TRUE(settings.boolean("notify.followers"));
}

TEST_F(IniSettingsTest, KeepTheGoodLinesOfABrokenFile)
{
    std::filesystem::create_directories(file.parent_path());
    test::putBytes(file, "[General]\nnotify.milestones=false\nno sign\n[[[\nselectedProfileId=p-1\n");
    EXPECT_FALSE(settings.boolean("notify.milestones"));
    settings.setBoolean("notify.followers", false);
    const IniSettings next{file};
    EXPECT_EQ(next.text("notify.milestones"), "false");
    EXPECT_EQ(next.text("notify.followers"), "false");
}

TEST_F(IniSettingsTest, ReplaceNoFileThatCannotBeRead)
{
    const std::string contents = "[General]\nselectedProfileId=p-1\n";
    EXPECT_EQ(test::withoutPrivileges(
                  [&] {
                      const std::filesystem::path locked = scratch / "locked.ini";
                      test::putBytes(locked, contents);
                      std::filesystem::permissions(locked, std::filesystem::perms::none);
                      IniSettings mine{locked};
                      std::string told = mine.text("selectedProfileId").value_or("nothing");
                      mine.setBoolean("notify.followers", false);
                      told += mine.text("notify.followers") == "false" ? ", holds here" : ", lost";
                      std::filesystem::permissions(locked, std::filesystem::perms::owner_all);
                      told += test::bytesOf(locked) == contents ? ", kept" : ", gone";
                      // What could not be written goes out now.
                      told += ", " + mine.text("selectedProfileId").value_or("nothing");
                      return told + ", " + IniSettings{locked}.text("notify.followers").value_or("nothing");
                  },
                  scratch.path()),
              "nothing, holds here, kept, p-1, false");
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
