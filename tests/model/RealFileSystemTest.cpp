#include "model/RealFileSystem.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <latch>
#include <thread>

namespace roost {
namespace {

std::error_code error(std::errc code) { return std::make_error_code(code); }

mode_t modeOf(const std::filesystem::path& path)
{
    struct stat found{};
    return ::stat(path.c_str(), &found) == 0 ? found.st_mode & 07777U : 0;
}

/// The process's mask for new files, for as long as this lives.
class Umask {
public:
    explicit Umask(mode_t mask) : before_{::umask(mask)} {}
    ~Umask() { ::umask(before_); }
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;

private:
    mode_t before_;
};

class RealFileSystemTest : public testing::Test {
protected:
    test::ScratchFolder folder;
    std::filesystem::path file = folder / "file";
    RealFileSystem files;
};

TEST_F(RealFileSystemTest, MakesFoldersThatOnlyTheUserCanEnter)
{
    for (const mode_t mask : {0000U, 0022U, 0077U}) {
        const Umask umask{mask};
        const auto made = folder / std::to_string(mask) / "b";
        ASSERT_FALSE(files.makeFolders(made));
        EXPECT_EQ(modeOf(made), 0700U);
        EXPECT_EQ(modeOf(made.parent_path()), 0700U);
    }
}

TEST_F(RealFileSystemTest, MakesFilesThatOnlyTheUserCanRead)
{
    for (const mode_t mask : {0000U, 0022U, 0077U, 0277U}) {
        const Umask umask{mask};
        ASSERT_FALSE(replaceFile(files, file, "secret"));
        EXPECT_EQ(modeOf(file), 0600U) << mask;
    }
}

TEST_F(RealFileSystemTest, TakesOverATemporaryFileWithWiderRights)
{
    test::putBytes(folder / ".file.new", "left by a writer that died, and longer than what follows");
    ASSERT_EQ(::chmod((folder / ".file.new").c_str(), 0666), 0);
    ASSERT_FALSE(replaceFile(files, file, "new"));
    EXPECT_EQ(test::bytesOf(file), "new");
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_FALSE(std::filesystem::exists(folder / ".file.new"));
}

TEST_F(RealFileSystemTest, ReplacesALinkInTheFilesPlaceAndNotWhatItPointsTo)
{
    test::putBytes(folder / "other", "other");
    std::filesystem::create_symlink(folder / "other", file);
    ASSERT_FALSE(replaceFile(files, file, "new"));
    EXPECT_EQ(test::bytesOf(file), "new");
    EXPECT_EQ(test::bytesOf(folder / "other"), "other");
    EXPECT_FALSE(std::filesystem::is_symlink(file));
}

TEST_F(RealFileSystemTest, RefusesALinkAtTheTemporaryName)
{
    test::putBytes(file, "old");
    test::putBytes(folder / "other", "other");
    for (const auto& target : {folder / "other", folder / "missing"}) {
        std::filesystem::create_symlink(target, folder / ".file.new");
        EXPECT_EQ(replaceFile(files, file, "new"), error(std::errc::too_many_symbolic_link_levels));
        EXPECT_EQ(test::bytesOf(file), "old");
        EXPECT_EQ(test::bytesOf(folder / "other"), "other");
        EXPECT_FALSE(std::filesystem::exists(folder / "missing"));
        std::filesystem::remove(folder / ".file.new");
    }
}

TEST_F(RealFileSystemTest, DoesNotHangOnAPipe)
{
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    const std::string said = test::inChildProcess([this] {
        ::alarm(20); // who hangs is ended
        const auto read = files.read(folder / "pipe", 100);
        const auto temporary = files.openTemporary(folder / "pipe");
        return (read ? "read" : read.error().message()) + ", " +
               (temporary ? "opened" : temporary.error().message());
    });
    EXPECT_EQ(said, "Invalid argument, No such device or address");
}

TEST_F(RealFileSystemTest, MakesNothingBehindALinkToNowhere)
{
    std::filesystem::create_directory_symlink(folder / "nowhere", folder / "link");
    EXPECT_EQ(files.makeFolders(folder / "link"), error(std::errc::no_such_file_or_directory));
    EXPECT_FALSE(std::filesystem::exists(folder / "nowhere"));
}

TEST_F(RealFileSystemTest, FollowsALinkToAFolder)
{
    std::filesystem::create_directory(folder / "elsewhere");
    std::filesystem::create_directory_symlink(folder / "elsewhere", folder / "link");
    EXPECT_FALSE(files.makeFolders(folder / "link" / "deeper"));
    EXPECT_TRUE(std::filesystem::is_directory(folder / "elsewhere" / "deeper"));
}

TEST_F(RealFileSystemTest, WaitsATenthOfASecondForAnotherWriter)
{
    const auto first = files.openTemporary(file);
    ASSERT_TRUE(first);
    const auto before = std::chrono::steady_clock::now();
    const auto second = files.openTemporary(file);
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error(), error(std::errc::device_or_resource_busy));
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds{100});
}

TEST_F(RealFileSystemTest, TakesOverFromAWriterThatWasKilled)
{
    test::ChildProcess writer{[this](const test::ChildProcess::Voice& voice) {
        const auto temporary = files.openTemporary(file);
        static_cast<void>((*temporary)->write("half of what"));
        voice.say("open\n");
        ::raise(SIGKILL);
    }};
    ASSERT_EQ(writer.line(), "open");
    writer.wait();
    ASSERT_EQ(writer.signal(), SIGKILL);
    EXPECT_TRUE(files.openTemporary(file));
    EXPECT_EQ(test::bytesOf(file), "");
}

TEST_F(RealFileSystemTest, KeepsAnotherProcessAwayFromATemporaryFile)
{
    const auto temporary = files.openTemporary(file);
    ASSERT_TRUE(temporary);
    EXPECT_EQ(test::inChildProcess([this] {
                  const auto second = files.openTemporary(file);
                  return second ? "opened" : second.error().message();
              }),
              error(std::errc::device_or_resource_busy).message());
}

TEST_F(RealFileSystemTest, LeavesOneOfTheFilesWholeWhenSeveralWritersMeet)
{
    // In memory, where flushing costs nothing: whose file it is in the end does not hang on it.
    const test::ScratchFolder fast = test::ScratchFolder::inMemory();
    const std::filesystem::path shared = fast / "file";
    constexpr int writers = 4;
    constexpr int rounds = 200;
    std::latch start{writers};
    std::atomic<int> written = 0;
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int writer = 0; writer < writers; ++writer) {
            threads.emplace_back([&, writer] {
                RealFileSystem own;
                const std::string bytes(static_cast<std::size_t>(10'000 + writer),
                                        static_cast<char>('a' + writer));
                start.arrive_and_wait();
                for (int i = 0; i < rounds; ++i) {
                    const std::error_code failed = replaceFile(own, shared, bytes);
                    written += failed ? 0 : 1;
                    wrong += failed && failed != error(std::errc::device_or_resource_busy) ? 1 : 0;
                    const auto read = own.read(shared, 20'000);
                    const bool isWhole =
                        read && read->size() >= 10'000 &&
                        read->size() == 10'000 + static_cast<std::size_t>(read->front() - 'a') &&
                        read->find_first_not_of(read->front()) == std::string::npos;
                    // There is no file before the first writer has done its work.
                    wrong += isWhole || written == 0 ? 0 : 1;
                }
            });
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(written, rounds);
    EXPECT_FALSE(std::filesystem::exists(fast / ".file.new"));
}

/// Folders and files of others. Who is no administrator has none, but is already without privileges.
class RealFileSystemAmongUsers : public RealFileSystemTest {
protected:
    void SetUp() override { ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0); }

    static std::string said(const std::error_code& failed) { return failed ? failed.message() : "done"; }
};

TEST_F(RealFileSystemAmongUsers, TakesNoFolderOfAnotherUser)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the administrator can make a folder that belongs to another user";
    }
    std::filesystem::create_directory(folder / "others");
    ASSERT_EQ(::chmod((folder / "others").c_str(), 0777), 0);
    EXPECT_EQ(test::withoutPrivileges([this] { return said(files.makeFolders(folder / "others")); }),
              "Permission denied");
    EXPECT_EQ(test::withoutPrivileges([this] { return said(files.makeFolders(folder / "others" / "own")); }),
              "done");
}

TEST_F(RealFileSystemAmongUsers, SaysThatAFolderCannotBeMadeOrWritten)
{
    std::filesystem::create_directory(folder / "closed");
    ASSERT_EQ(::chmod((folder / "closed").c_str(), 0555), 0);
    EXPECT_EQ(test::withoutPrivileges([this] { return said(files.makeFolders(folder / "closed" / "new")); }),
              "Permission denied");
    EXPECT_EQ(test::withoutPrivileges(
                  [this] { return said(replaceFile(files, folder / "closed" / "file", "new")); }),
              "Permission denied");
}

TEST_F(RealFileSystemAmongUsers, SaysThatAFileMayNotBeRead)
{
    test::putBytes(file, "secret");
    ASSERT_EQ(::chmod(file.c_str(), 0000), 0);
    EXPECT_EQ(test::withoutPrivileges([this] {
                  const auto read = files.read(file, 100);
                  return read ? *read : read.error().message();
              }),
              "Permission denied");
}

} // namespace
} // namespace roost
