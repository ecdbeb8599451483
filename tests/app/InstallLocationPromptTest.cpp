#include "app/InstallLocationPrompt.h"

#include <gtest/gtest.h>

namespace roost::test {

TEST(InstallLocationPrompt, AsksForAMoveOffADiskImage)
{
    const InstallLocationPrompt expected{
        .message = "Move Brisken Roost to Applications first",
        .information =
            "Brisken Roost is not in the Applications folder yet, so it cannot update itself or open at "
            "login. Drag it there, eject the disk image if there is one, and open it from there.",
        .showApplications = "Show Applications",
        .notNow = "Not now"};
    EXPECT_EQ(InstallLocationPrompt::ifNeeded("/Volumes/Roost/Brisken Roost.app", "en"), expected);
    EXPECT_EQ(InstallLocationPrompt::ifNeeded("/d/AppTranslocation/Brisken Roost.app", "en"), expected);
}

TEST(InstallLocationPrompt, SpeaksTheLanguageOfItsReader)
{
    const auto prompt = InstallLocationPrompt::ifNeeded("/Volumes/Roost/Brisken Roost.app", "de");
    ASSERT_TRUE(prompt);
    EXPECT_EQ(prompt->notNow, "Nicht jetzt");
}

TEST(InstallLocationPrompt, IsNotNeededWhereTheAppMayStay)
{
    for (const char* path : {"/Applications/Brisken Roost.app", "/Users/me/Applications/Brisken Roost.app",
                             "/Users/me/Downloads/Brisken Roost.app", "/usr/bin/brisken-roost",
                             "/home/me/.local/share/brisken-roost/bin/brisken-roost"}) {
        EXPECT_EQ(InstallLocationPrompt::ifNeeded(path, "en"), std::nullopt) << path;
    }
}

} // namespace roost::test
