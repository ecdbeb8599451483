#include "platform/ToolRun.h"

#include "tests/platform/PollUntil.h"
#include "tests/platform/ScratchDesktop.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;

struct Tools {
    ScratchDesktop desktop;

    std::optional<ToolResult> run(const QString& name, const QStringList& arguments = {},
                                  std::chrono::milliseconds timeout = guardTime)
    {
        return await(runTool(name, arguments, desktop.environment, timeout, {}));
    }
};

TEST(RunTool, GivesWhatTheToolPrintsAndHowItEnds)
{
    Tools tools;
    tools.desktop.set("ROOST_MARK", "mark");
    tools.desktop.script("tool", "cat; echo $ROOST_MARK \"$1\"; echo complaint >&2; exit 3");
    const auto result = tools.run(QStringLiteral("tool"), {QStringLiteral("a b")});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->exitCode, 3);
    EXPECT_EQ(result->output, "mark a b\n");
}

TEST(RunTool, GivesNothingWithoutTheTool)
{
    Tools tools;
    EXPECT_FALSE(tools.run(QStringLiteral("no-such-tool")));
    putBytes(tools.desktop / "bin" / "no-program", "text");
    EXPECT_FALSE(tools.run(QStringLiteral("no-program")));
}

TEST(RunTool, GivesNothingWhenTheToolIsKilled)
{
    Tools tools;
    tools.desktop.script("tool", "echo output; kill -9 $$");
    EXPECT_FALSE(tools.run(QStringLiteral("tool")));
}

TEST(RunTool, EndsAToolThatTakesTooLong)
{
    Tools tools;
    tools.desktop.script("tool", "echo $$ >'" + (tools.desktop / "pid").string() + "'; exec sleep 100");
    EXPECT_FALSE(tools.run(QStringLiteral("tool"), {}, 300ms));
    const std::string process = bytesOf(tools.desktop / "pid");
    ASSERT_FALSE(process.empty()) << "it did not even begin in time";
    EXPECT_TRUE(
        pollUntil([&] { return !std::filesystem::exists("/proc/" + std::to_string(std::stoi(process))); }));
}

TEST(RunTool, TakesOnlySoMuchOfTheOutput)
{
    Tools tools;
    tools.desktop.script("tool", "head -c 1000000 /dev/zero");
    const auto result = tools.run(QStringLiteral("tool"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->output.size(), 64 * 1024);
}

} // namespace
} // namespace roost::test
