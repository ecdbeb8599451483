#include "app/LaunchAtLogin.h"

#include "tests/app/AppWorld.h"

namespace roost::test {

TEST(LaunchAtLogin, AddsWhatIsNotThere)
{
    ScriptedLoginItem item;
    EXPECT_TRUE(LaunchAtLogin::set(item, true));
    EXPECT_EQ(item.status(), LoginItem::Status::enabled);
    EXPECT_EQ(item.changes, 1);
}

TEST(LaunchAtLogin, LeavesWhatIsEnabledAlone)
{
    ScriptedLoginItem item;
    item.enabled = true;
    EXPECT_TRUE(LaunchAtLogin::set(item, true));
    EXPECT_EQ(item.changes, 0);
}

TEST(LaunchAtLogin, AddsAgainWhatWaitsForApproval)
{
    ScriptedLoginItem item;
    item.enabled = true;
    item.isHidden = true;
    EXPECT_TRUE(LaunchAtLogin::set(item, true));
    EXPECT_EQ(item.changes, 1);
    EXPECT_EQ(item.status(), LoginItem::Status::requiresApproval);
}

TEST(LaunchAtLogin, RemovesWhatIsThereApprovedOrNot)
{
    for (const bool isHidden : {false, true}) {
        ScriptedLoginItem item;
        item.enabled = true;
        item.isHidden = isHidden;
        EXPECT_TRUE(LaunchAtLogin::set(item, false));
        EXPECT_EQ(item.changes, 1);
        EXPECT_EQ(item.status(), LoginItem::Status::notRegistered);
    }
}

TEST(LaunchAtLogin, RemovesNothingWhereNothingIs)
{
    ScriptedLoginItem item;
    EXPECT_TRUE(LaunchAtLogin::set(item, false));
    EXPECT_EQ(item.changes, 0);
}

TEST(LaunchAtLogin, PassesOnWhatWentWrong)
{
    ScriptedLoginItem item;
    item.trouble = "no space";
    EXPECT_EQ(LaunchAtLogin::set(item, true).error(), "no space");
    item.enabled = true;
    EXPECT_EQ(LaunchAtLogin::set(item, false).error(), "no space");
}

} // namespace roost::test
