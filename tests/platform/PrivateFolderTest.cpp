#include "platform/PrivateFolder.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace roost::test {
namespace {

namespace fs = std::filesystem;
using std::nullopt;

/// A runtime folder and a folder for temporary files.
struct Folders {
    ScratchFolder folder;
    fs::path runtime = folder / "run";
    fs::path temporary = folder / "tmp";

    Folders()
    {
        fs::create_directory(runtime);
        ::chmod(runtime.c_str(), 0700);
        fs::create_directory(temporary);
    }

    std::optional<fs::path> find() const
    {
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), QString::fromStdString(runtime.string()));
        environment.insert(QStringLiteral("TMPDIR"), QString::fromStdString(temporary.string()));
        return privateRuntimeFolder(environment);
    }

    fs::path inRuntime() const { return folder / "run" / "world.brisken.roost.mac"; }
    fs::path inTemporary() const
    {
        return temporary / ("world.brisken.roost.mac-" + std::to_string(::geteuid()));
    }
};

mode_t modeOf(const fs::path& path)
{
    struct stat found{};
    return ::lstat(path.c_str(), &found) == 0 ? found.st_mode : 0;
}

TEST(PrivateRuntimeFolder, IsMadeInTheRuntimeFolderForThisUserAlone)
{
    const Folders folders;
    EXPECT_EQ(folders.find(), folders.inRuntime());
    EXPECT_EQ(modeOf(folders.inRuntime()), mode_t{S_IFDIR | 0700});
    EXPECT_EQ(folders.find(), folders.inRuntime()) << "and found again";
}

TEST(PrivateRuntimeFolder, IsMadeAmongTheTemporaryFilesWithoutARuntimeFolder)
{
    Folders folders;
    for (const fs::path& none : {fs::path{}, fs::path{"relative"}, folders.folder / "missing"}) {
        folders.runtime = none;
        EXPECT_EQ(folders.find(), folders.inTemporary()) << none;
    }
    EXPECT_EQ(modeOf(folders.inTemporary()), mode_t{S_IFDIR | 0700});
}

TEST(PrivateRuntimeFolder, IsNotInARuntimeFolderThatOthersCanEnter)
{
    const Folders folders;
    ::chmod(folders.runtime.c_str(), 0710);
    EXPECT_EQ(folders.find(), folders.inTemporary());
}

TEST(PrivateRuntimeFolder, IsNotInARuntimeFolderOfAnotherUser)
{
    const Folders folders;
    const std::string found =
        withoutPrivileges([&] { return folders.find().value_or("none").string(); }, folders.temporary);
    if (::geteuid() == 0) {
        EXPECT_EQ(found, "none") << "not even the way there is open to others";
    }
    ::chmod(folders.folder.path().c_str(), 0755);
    if (::geteuid() == 0) {
        EXPECT_EQ(
            withoutPrivileges([&] { return folders.find().value_or("none").string(); }, folders.temporary),
            (folders.temporary / "world.brisken.roost.mac-65534").string());
    }
}

TEST(PrivateRuntimeFolder, IsNoneWhenItsNameIsALink)
{
    const Folders folders;
    const fs::path elsewhere = folders.folder / "elsewhere";
    fs::create_directory(elsewhere);
    ::chmod(elsewhere.c_str(), 0700);
    fs::create_symlink(elsewhere, folders.inRuntime());
    EXPECT_EQ(folders.find(), nullopt);
    fs::remove(folders.inRuntime());
    fs::create_symlink(folders.folder / "nowhere", folders.inRuntime());
    EXPECT_EQ(folders.find(), nullopt);
}

TEST(PrivateRuntimeFolder, IsNoneWhenItsNameIsTakenOtherwise)
{
    Folders folders;
    folders.runtime.clear();
    fs::create_directory(folders.inTemporary());
    ::chmod(folders.inTemporary().c_str(), 0755);
    EXPECT_EQ(folders.find(), nullopt) << "open to others";
    ::chmod(folders.inTemporary().c_str(), 0700);
    EXPECT_EQ(folders.find(), folders.inTemporary());
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(folders.inTemporary().c_str(), 65534, 65534), 0);
        EXPECT_EQ(folders.find(), nullopt) << "another user's";
    }
    fs::remove(folders.inTemporary());
    putBytes(folders.inTemporary(), "a file");
    EXPECT_EQ(folders.find(), nullopt);
}

} // namespace
} // namespace roost::test
