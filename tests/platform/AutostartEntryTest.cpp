#include "platform/AutostartEntry.h"

#include "model/RealFileSystem.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace roost::test {

namespace {

using Status = LoginItem::Status;
using testing::HasSubstr;

class AutostartEntryTest : public testing::Test {
protected:
    AutostartEntry entry(const std::filesystem::path& program = "/usr/bin/env")
    {
        return {files_, folder_ / "autostart", program, "run --quietly", desktops_};
    }

    std::filesystem::path file() const { return folder_ / "autostart" / AutostartEntry::name; }
    std::string text() const { return bytesOf(file()); }
    void put(const std::string& text) const
    {
        std::filesystem::create_directories(file().parent_path());
        putBytes(file(), text);
    }

    ScratchFolder folder_;
    RealFileSystem files_;
    QString desktops_ = QStringLiteral("ubuntu:GNOME");
};

const std::string plain = "[Desktop Entry]\nType=Application\nName=Roost\nExec=/usr/bin/env run\n";

} // namespace

TEST_F(AutostartEntryTest, IsNotRegisteredAtFirst)
{
    EXPECT_EQ(entry().status(), Status::notRegistered);
    EXPECT_TRUE(entry().remove());
}

TEST_F(AutostartEntryTest, IsAddedAndTakenBack)
{
    ASSERT_TRUE(entry().add());
    EXPECT_EQ(entry().status(), Status::enabled);
    EXPECT_THAT(text(), HasSubstr("\nExec=/usr/bin/env run --quietly\n"));
    ASSERT_TRUE(entry().remove());
    EXPECT_EQ(entry().status(), Status::notRegistered);
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST(AutostartFolder, IsTheOneOfTheUser)
{
    QProcessEnvironment environment;
    EXPECT_EQ(AutostartEntry::folderOf(environment), std::nullopt);
    environment.insert(QStringLiteral("HOME"), QStringLiteral("/home/me"));
    EXPECT_EQ(AutostartEntry::folderOf(environment), "/home/me/.config/autostart");
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QStringLiteral("/elsewhere"));
    EXPECT_EQ(AutostartEntry::folderOf(environment), "/elsewhere/autostart");
}

TEST_F(AutostartEntryTest, HasNowhereToBeWithoutAFolder)
{
    AutostartEntry entry{files_, std::nullopt, "/usr/bin/env", "run", desktops_};
    EXPECT_FALSE(entry.add());
    EXPECT_EQ(entry.status(), Status::notRegistered);
    EXPECT_TRUE(entry.remove());
}

TEST_F(AutostartEntryTest, WaitsForApprovalWhereTheUserSwitchedItOff)
{
    for (const char* line : {"Hidden=true", "X-GNOME-Autostart-enabled=false", "NotShowIn=KDE;GNOME;",
                             "OnlyShowIn=KDE;XFCE;", "OnlyShowIn="}) {
        put(plain + line + "\n");
        EXPECT_EQ(entry().status(), Status::requiresApproval) << line;
        ASSERT_TRUE(entry().add());
        EXPECT_EQ(text(), plain + line + "\n") << "that is the user's to change";
    }
    ASSERT_TRUE(entry().remove());
    EXPECT_EQ(entry().status(), Status::notRegistered);
}

TEST_F(AutostartEntryTest, IsEnabledWhereItIsMeantForThisDesktop)
{
    for (const char* line : {"Hidden=false", "X-GNOME-Autostart-enabled=true", "NotShowIn=KDE;",
                             "OnlyShowIn=KDE;GNOME;", "X-Other=1"}) {
        put(plain + line + "\n");
        EXPECT_EQ(entry().status(), Status::enabled) << line;
    }
}

TEST_F(AutostartEntryTest, WaitsForApprovalOnADesktopThatStartsNothing)
{
    ASSERT_TRUE(entry().add());
    for (const char* desktop : {"sway", "Hyprland", "i3"}) {
        desktops_ = QString::fromLatin1(desktop);
        EXPECT_EQ(entry().status(), Status::requiresApproval) << desktop;
    }
    for (const char* desktop : {"KDE", "XFCE", "LXQt", "sway-like", ""}) {
        desktops_ = QString::fromLatin1(desktop);
        EXPECT_EQ(entry().status(), Status::enabled) << desktop;
    }
}

TEST_F(AutostartEntryTest, LeavesWhatItDoesNotUnderstandAlone)
{
    for (const char* other : {"", "nonsense", "[Other]\nA=b\n"}) {
        put(other);
        ASSERT_TRUE(entry().add());
        entry().renew();
        EXPECT_EQ(text(), other);
    }
}

TEST_F(AutostartEntryTest, StartsAProgramWhosePathNeedsQuotes)
{
    ASSERT_TRUE(entry("/opt/the program/brisken roost").add());
    EXPECT_THAT(text(), HasSubstr("\nExec=\"/opt/the program/brisken roost\" run --quietly\n"));
}

TEST_F(AutostartEntryTest, CannotStartAProgramThatNoEntryCanName)
{
    EXPECT_FALSE(entry("relative/brisken-roost").add());
    EXPECT_EQ(entry().status(), Status::notRegistered);
}

TEST_F(AutostartEntryTest, SaysWhyItCannotBeWrittenAndLeavesNothingBehind)
{
    FailingFileSystem failing{files_};
    AutostartEntry entry{failing, folder_ / "autostart", "/usr/bin/env", "run", desktops_};
    failing.failEvery(FailingFileSystem::Operation::write,
                      std::make_error_code(std::errc::no_space_on_device));
    EXPECT_THAT(entry.add().error(), HasSubstr("No space left"));
    EXPECT_EQ(entry.status(), Status::notRegistered);
    EXPECT_TRUE(std::filesystem::is_empty(file().parent_path()));

    failing.recover();
    ASSERT_TRUE(entry.add());
    failing.failEvery(FailingFileSystem::Operation::remove,
                      std::make_error_code(std::errc::read_only_file_system));
    EXPECT_FALSE(entry.remove());
    EXPECT_EQ(entry.status(), Status::enabled);
}

TEST_F(AutostartEntryTest, IsNotReplacedWhereItCannotBeRead)
{
    put(plain);
    FailingFileSystem failing{files_};
    AutostartEntry entry{failing, folder_ / "autostart", "/usr/bin/env", "run", desktops_};
    failing.failEvery(FailingFileSystem::Operation::read, std::make_error_code(std::errc::permission_denied));
    EXPECT_EQ(entry.status(), Status::requiresApproval);
    ASSERT_TRUE(entry.add());
    EXPECT_EQ(text(), plain);
}

TEST_F(AutostartEntryTest, FollowsAProgramThatWasMoved)
{
    ASSERT_TRUE(entry("/nowhere/brisken-roost").add());
    entry().renew();
    EXPECT_THAT(text(), HasSubstr("\nExec=/usr/bin/env run --quietly\n"));
}

TEST_F(AutostartEntryTest, KeepsWhatTheUserMadeOfIt)
{
    put(plain + "Comment=mine\n");
    entry("/usr/bin/true").renew();
    EXPECT_EQ(text(), plain + "Comment=mine\n");

    const std::string hidden =
        "[Desktop Entry]\nType=Application\nExec=/nowhere/brisken-roost\nHidden=true\n";
    put(hidden);
    entry().renew();
    EXPECT_EQ(text(), hidden);
}

TEST_F(AutostartEntryTest, FindsAProgramWhosePathStandsInItInAnotherForm)
{
    const auto program = folder_ / "100% \\ `roost`";
    putBytes(program, "#!/bin/sh\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    ASSERT_TRUE(entry(program).add());
    const std::string mine = text() + "Comment=mine\n";
    put(mine);
    entry(program).renew();
    EXPECT_EQ(text(), mine);
}

TEST_F(AutostartEntryTest, IsNotMadeByLookingAfterIt)
{
    entry().renew();
    EXPECT_EQ(entry().status(), Status::notRegistered);
}

} // namespace roost::test
