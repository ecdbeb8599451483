#include "platform/DesktopEntry.h"

#include "tests/platform/ScratchDesktop.h"

#include <gmock/gmock.h>

#include <QProcess>

namespace roost::test {
namespace {

using std::nullopt;
using testing::HasSubstr;

TEST(ExecArgument, IsQuotedOnlyWhereThatIsNeeded)
{
    EXPECT_EQ(execArgument("/usr/bin/brisken-roost"), "/usr/bin/brisken-roost");
    EXPECT_EQ(execArgument("/opt/köln_1.0+x,y@z:[a]/p"), "/opt/köln_1.0+x,y@z:[a]/p");
    EXPECT_EQ(execArgument("/my projects/p"), "\"/my projects/p\"");
    for (const char c : std::string("'><~|&;*?#()")) {
        const std::string path = std::string("/a") + c + "b";
        EXPECT_EQ(execArgument(path), '"' + path + '"');
    }
}

TEST(ExecArgument, EscapesForTheQuotesAndForTheString)
{
    EXPECT_EQ(execArgument("/a\"b"), R"("/a\\"b")");
    EXPECT_EQ(execArgument("/a`b"), R"("/a\\`b")");
    EXPECT_EQ(execArgument("/a$b"), R"("/a\\$b")");
    EXPECT_EQ(execArgument("/a\\b"), R"("/a\\\\b")");
    EXPECT_EQ(execArgument("/100%"), "/100%%");
}

TEST(ExecArgument, IsNoneForWhatNoEntryCanName)
{
    for (const char* path : {"", "brisken-roost", "./p", "/a=b", "/a\nb", "/a\tb", "/a\x7f"}) {
        EXPECT_EQ(execArgument(path), nullopt) << path;
        EXPECT_EQ(desktopEntry(path), nullopt) << path;
    }
}

TEST(DesktopEntry, StartsTheProgramWithTheAddress)
{
    const std::string text = *desktopEntry("/my bin/p");
    EXPECT_THAT(text, HasSubstr("\nExec=\"/my bin/p\" %u\n"));
    EXPECT_THAT(text, HasSubstr("\nMimeType=x-scheme-handler/briskenroost;\n"));
    EXPECT_THAT(text, testing::Not(HasSubstr("@")));
}

TEST(DesktopEntry, IsValid)
{
    const ScratchFolder folder;
    for (const char* program : {"/usr/bin/p", "/a \"b\" `c` $d \\e %f 'g' (h)/p"}) {
        const std::string file = (folder / "world.brisken.roost.mac.desktop").string();
        putBytes(file, *desktopEntry(program));
        QProcess validator;
        validator.setProcessChannelMode(QProcess::MergedChannels);
        validator.start(QStringLiteral("desktop-file-validate"), {QString::fromStdString(file)});
        ASSERT_TRUE(validator.waitForFinished()) << "the package desktop-file-utils has it";
        EXPECT_EQ(validator.exitCode(), 0) << program;
        EXPECT_EQ(validator.readAll().toStdString(), "") << program;
    }
}

} // namespace
} // namespace roost::test
