#include "model/SharedContainer.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace roost::SharedContainer {
namespace {

constexpr const char* group = "TEAM.example.group";

InfoDictionary infoWith(const QJsonValue& value)
{
    return InfoDictionary{QJsonObject{{QStringLiteral("RoostAppGroup"), value}}};
}

/// Where the files of a user with this data folder lie.
Location resolved(const std::filesystem::path& data) { return resolve({data, "/nowhere/temporary"}, group); }

Location shared(const std::filesystem::path& data) { return {data / group, true}; }

Location fallback(const std::filesystem::path& data) { return {data / "BriskenRoost", false}; }

TEST(GroupIdentifier, IsTheOneOfTheInformationDictionary)
{
    EXPECT_EQ(groupIdentifier(infoWith(QStringLiteral("TEAM.example.group"))), "TEAM.example.group");
    EXPECT_EQ(groupIdentifier(infoWith(QStringLiteral("a b"))), "a b");
    EXPECT_EQ(groupIdentifier(infoWith(QStringLiteral("..."))), "...");
}

TEST(GroupIdentifier, IsTheBuiltInOneWhenTheValueIsUnset)
{
    const std::string builtIn = "QK27XRWN5P.world.brisken.roost";
    EXPECT_EQ(groupIdentifier(InfoDictionary{QJsonObject{}}), builtIn);
    EXPECT_EQ(groupIdentifier(infoWith(QStringLiteral(""))), builtIn);
    EXPECT_EQ(groupIdentifier(infoWith(5)), builtIn);
    EXPECT_EQ(groupIdentifier(infoWith(QJsonValue::Null)), builtIn);
    EXPECT_EQ(groupIdentifier(infoWith(QStringLiteral("$(ROOST_APP_GROUP)"))), builtIn);
    EXPECT_EQ(groupIdentifier(infoWith(QStringLiteral("$(TEAM).world.brisken.roost"))), builtIn);
}

TEST(GroupIdentifier, IsTheBuiltInOneWhenTheValueIsNoNameOfAFolder)
{
    for (const char* name : {".", "..", "/", "a/b", "/etc", "../x"}) {
        EXPECT_EQ(groupIdentifier(infoWith(QString::fromLatin1(name))), "QK27XRWN5P.world.brisken.roost")
            << name;
    }
    EXPECT_EQ(groupIdentifier(infoWith(QString::fromLatin1("a\0b", 3))), "QK27XRWN5P.world.brisken.roost");
}

TEST(Resolve, GivesTheGroupsFolderAndMakesNothing)
{
    const test::ScratchFolder data;
    EXPECT_EQ(resolved(data.path()), shared(data.path()));
    EXPECT_EQ(resolved(data / "not" / "there"), shared(data / "not" / "there"));
    EXPECT_TRUE(std::filesystem::is_empty(data.path()));
}

TEST(Resolve, GivesAGroupsFolderThatExists)
{
    const test::ScratchFolder data;
    std::filesystem::create_directory(data / group);
    EXPECT_EQ(resolved(data.path()), shared(data.path()));
}

TEST(Resolve, FollowsALinkToAFolderOfThisUser)
{
    const test::ScratchFolder data;
    std::filesystem::create_directory(data / "elsewhere");
    std::filesystem::create_directory_symlink(data / "elsewhere", data / group);
    EXPECT_EQ(resolved(data.path()), shared(data.path()));
}

TEST(Resolve, FallsBackWhenSomethingElseHasTheName)
{
    const test::ScratchFolder data;
    test::putBytes(data / group, "a file");
    EXPECT_EQ(resolved(data.path()), fallback(data.path()));
    std::filesystem::remove(data / group);
    std::filesystem::create_symlink(data / "nowhere", data / group);
    EXPECT_EQ(resolved(data.path()), fallback(data.path()));
}

TEST(Resolve, FallsBackWhenAFileStandsOnTheWay)
{
    const test::ScratchFolder data;
    test::putBytes(data / "file", "");
    EXPECT_EQ(resolved(data / "file"), fallback(data / "file"));
    EXPECT_EQ(resolved(data / "file" / "deeper"), fallback(data / "file" / "deeper"));
}

TEST(Resolve, TakesTheTemporaryFolderWithoutADataFolder)
{
    const test::ScratchFolder temporary;
    EXPECT_EQ(resolve({{}, temporary.path()}, group), fallback(temporary.path()));
}

/// "shared" or "BriskenRoost" for a user without privileges.
std::string resolvedForAnyone(const std::filesystem::path& data)
{
    return test::withoutPrivileges([&data]() -> std::string {
        const Location location = resolved(data);
        if (location.isShared != (location.directory == data / group)) {
            return "flag and folder do not belong together";
        }
        return location.isShared ? "shared" : location.directory.filename().string();
    });
}

/// Needs the right to give folders away, to make those of another user.
class ResolveAmongUsers : public testing::Test {
protected:
    void SetUp() override
    {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "only the administrator can make a folder that belongs to another user";
        }
        ASSERT_EQ(::chmod(data.path().c_str(), 0755), 0);
        std::filesystem::create_directory(data / group);
    }

    void give(uid_t owner, mode_t mode) const
    {
        ASSERT_EQ(::chown((data / group).c_str(), owner, owner), 0);
        ASSERT_EQ(::chmod((data / group).c_str(), mode), 0);
    }

    test::ScratchFolder data;
};

TEST_F(ResolveAmongUsers, TakesAFolderOfThisUserOnly)
{
    give(65534, 0700);
    EXPECT_EQ(resolvedForAnyone(data.path()), "shared");
    give(65533, 0777);
    EXPECT_EQ(resolvedForAnyone(data.path()), "BriskenRoost");
    give(0, 0777);
    EXPECT_EQ(resolvedForAnyone(data.path()), "BriskenRoost");
    // The administrator, too, is no owner of somebody's folder, though free to write there.
    give(65534, 0700);
    EXPECT_EQ(resolved(data.path()), fallback(data.path()));
}

TEST_F(ResolveAmongUsers, NeedsTheRightToWriteAndToEnter)
{
    for (const mode_t mode : {0000U, 0500U, 0600U, 0200U, 0400U}) {
        give(65534, mode);
        EXPECT_EQ(resolvedForAnyone(data.path()), "BriskenRoost") << mode;
    }
    give(65534, 0300);
    EXPECT_EQ(resolvedForAnyone(data.path()), "shared");
}

TEST_F(ResolveAmongUsers, NeedsAFolderAboveThatCanBeWrittenToMakeOne)
{
    std::filesystem::remove(data / group);
    EXPECT_EQ(resolvedForAnyone(data.path()), "BriskenRoost");
    EXPECT_EQ(resolvedForAnyone(data / "not" / "there"), "BriskenRoost");
    ASSERT_EQ(::chmod(data.path().c_str(), 0777), 0);
    EXPECT_EQ(resolvedForAnyone(data.path()), "shared");
    EXPECT_EQ(resolvedForAnyone(data / "not" / "there"), "shared");
}

TEST_F(ResolveAmongUsers, FallsBackWhenTheDataFolderCannotBeEntered)
{
    ASSERT_EQ(::chmod(data.path().c_str(), 0700), 0);
    EXPECT_EQ(resolvedForAnyone(data.path()), "BriskenRoost");
}

/// What the environment names, after `change` in a process of its own.
std::string foldersAfter(const std::function<void()>& change)
{
    return test::inChildProcess([&change] {
        change();
        const UserFolders folders = UserFolders::fromEnvironment();
        return (folders.data ? folders.data->string() : "none") + " " + folders.temporary.string();
    });
}

TEST(UserFolders, AreTheOnesOfTheEnvironment)
{
    EXPECT_EQ(foldersAfter([] {
                  ::setenv("XDG_DATA_HOME", "/data", 1);
                  ::setenv("HOME", "/home/someone", 1);
                  ::setenv("TMPDIR", "/scratch", 1);
              }),
              "/data /scratch");
}

TEST(UserFolders, AreBelowTheHomeFolderByDefault)
{
    for (const char* data : {"", "relative/data", "./data", "~/data"}) {
        EXPECT_EQ(foldersAfter([data] {
                      ::setenv("XDG_DATA_HOME", data, 1);
                      ::setenv("HOME", "/home/someone", 1);
                      ::setenv("TMPDIR", "relative", 1);
                  }),
                  "/home/someone/.local/share /tmp")
            << data;
    }
    EXPECT_EQ(foldersAfter([] {
                  ::unsetenv("XDG_DATA_HOME");
                  ::setenv("HOME", "/home/someone", 1);
                  ::unsetenv("TMPDIR");
              }),
              "/home/someone/.local/share /tmp");
}

TEST(UserFolders, HaveNoDataFolderWithoutAnAbsolutePath)
{
    for (const char* home : {"", "home", "~"}) {
        EXPECT_EQ(foldersAfter([home] {
                      ::setenv("XDG_DATA_HOME", "", 1);
                      ::setenv("HOME", home, 1);
                      ::unsetenv("TMPDIR");
                  }),
                  "none /tmp")
            << home;
    }
    EXPECT_EQ(foldersAfter([] {
                  ::unsetenv("XDG_DATA_HOME");
                  ::unsetenv("HOME");
                  ::unsetenv("TMPDIR");
              }),
              "none /tmp");
}

} // namespace
} // namespace roost::SharedContainer
