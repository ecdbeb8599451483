#include "programs/brisken-roost/SelectCommand.h"

#include "app/AppSettings.h"
#include "platform/IniSettings.h"
#include "tests/programs/brisken-roost/AccountWorld.h"

namespace roost::test {
namespace {

class SelectCommandTest : public AccountWorld {
protected:
    QTemporaryDir home;
    IniSettings settings{home.filePath(QStringLiteral("settings.ini")).toStdString()};
};

TEST_F(SelectCommandTest, IsRememberedForTheApp)
{
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, {}), recordOf("b", 2, {})})));
    EXPECT_EQ(runSelect("b", file(), settings).code, ExitCode::fine);
    EXPECT_EQ(settings.text(AppSettings::selectedProfileId), "b");
}

TEST_F(SelectCommandTest, ChangesNothingForAProfileThatIsNotThere)
{
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, {})})));
    settings.setText(AppSettings::selectedProfileId, "a");
    const CommandResult result = runSelect("b\n", file(), settings);
    EXPECT_EQ(result.code, ExitCode::nothingToShow);
    EXPECT_EQ(result.error, "brisken-roost: There is no profile \"b \" here.\n");
    EXPECT_EQ(settings.text(AppSettings::selectedProfileId), "a");
}

} // namespace
} // namespace roost::test
