#include "platform/EnvironmentPaths.h"

#include "tests/platform/ScratchDesktop.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

QProcessEnvironment environmentWith(const char* variable, const QString& value)
{
    QProcessEnvironment environment;
    environment.insert(QString::fromLatin1(variable), value);
    return environment;
}

TEST(FolderNamedBy, IsOnlyAnAbsoluteOne)
{
    const QString variable = QStringLiteral("ROOST_FOLDER");
    const auto folder = [&variable](const QString& value) {
        return folderNamedBy(environmentWith("ROOST_FOLDER", value), variable);
    };
    EXPECT_EQ(folder(QStringLiteral("/a b/Köln")), std::filesystem::path{"/a b/Köln"});
    EXPECT_EQ(folder(QStringLiteral("relative/folder")), std::nullopt);
    EXPECT_EQ(folder({}), std::nullopt);
    EXPECT_EQ(folderNamedBy({}, variable), std::nullopt);
}

TEST(ProgramNamed, IsTheFirstAlongThePathThatCanBeStarted)
{
    const ScratchDesktop desktop;
    const std::filesystem::path program = desktop.script("tool", "true");
    std::filesystem::create_directory(desktop / "bin" / "before");
    putBytes(desktop / "bin" / "before" / "tool", "no program");
    const QString path =
        QString::fromStdString((desktop / "bin" / "before").string() + "::" + (desktop / "bin").string());
    EXPECT_EQ(programNamed(QStringLiteral("tool"), environmentWith("PATH", path)),
              QString::fromStdString(program.string()));
    EXPECT_EQ(programNamed(QStringLiteral("no-such-tool"), environmentWith("PATH", path)), QString{});
}

TEST(ProgramNamed, IsNotLookedForAlongAnotherPath)
{
    EXPECT_EQ(programNamed(QStringLiteral("sh"), environmentWith("PATH", {})), QString{});
    EXPECT_EQ(programNamed(QStringLiteral("sh"), {}), QString{});
}

} // namespace
} // namespace roost::test
