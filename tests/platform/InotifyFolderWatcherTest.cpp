#include "platform/InotifyFolderWatcher.h"

#include "tests/support/RunUntil.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

#include <fstream>

namespace roost::test {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

class InotifyFolderWatcherTest : public testing::Test {
protected:
    void write(const fs::path& file, const std::string& text) { std::ofstream{file, std::ios::app} << text; }

    /// Whether a change is told because of `deed`.
    bool isTold(const std::function<void()>& deed)
    {
        const int before = told;
        deed();
        return runUntil([&] { return told > before; });
    }

    /// Whether everything has been told, as far as a test can know.
    void settle()
    {
        int before = -1;
        while (before != told) {
            before = told;
            static_cast<void>(runUntil([] { return false; }, 4 * InotifyFolderWatcher::quiet));
        }
    }

    ScratchFolder scratch;
    fs::path folder = scratch.path() / "a" / "folder";
    int told = 0;
    std::function<void()> tell = [this] { ++told; };
};

TEST_F(InotifyFolderWatcherTest, TellsOfFilesThatAreMadeWrittenRenamedChangedAndRemoved)
{
    fs::create_directories(folder);
    const InotifyFolderWatcher watcher{folder, tell};

    EXPECT_TRUE(isTold([&] { write(folder / "file", "one"); }));
    settle();
    EXPECT_TRUE(isTold([&] { write(folder / "file", "two"); }));
    settle();
    EXPECT_TRUE(isTold([&] { fs::rename(folder / "file", folder / "other"); }));
    settle();
    EXPECT_TRUE(isTold([&] { fs::permissions(folder / "other", fs::perms::owner_read); }));
    settle();
    EXPECT_TRUE(isTold([&] { fs::remove(folder / "other"); }));
}

TEST_F(InotifyFolderWatcherTest, TellsOfAFileThatReplacesAnother)
{
    fs::create_directories(folder);
    write(folder / "file", "one");
    write(scratch.path() / "next", "two");
    const InotifyFolderWatcher watcher{folder, tell};

    EXPECT_TRUE(isTold([&] { fs::rename(scratch.path() / "next", folder / "file"); }));
}

TEST_F(InotifyFolderWatcherTest, TellsManyChangesAtOnceAsFew)
{
    fs::create_directories(folder);
    const InotifyFolderWatcher watcher{folder, tell};
    ASSERT_TRUE(isTold([&] {
        for (int i = 0; i < 1000; ++i) {
            write(folder / std::to_string(i), "x");
        }
    }));
    settle();

    EXPECT_LE(told, 20);
}

TEST_F(InotifyFolderWatcherTest, WaitsForAFolderThatIsNotThere)
{
    const InotifyFolderWatcher watcher{folder, tell};

    EXPECT_TRUE(isTold([&] {
        fs::create_directories(folder);
        write(folder / "file", "x");
    }));
    settle();
    EXPECT_TRUE(isTold([&] { write(folder / "file", "y"); }));
}

TEST_F(InotifyFolderWatcherTest, WatchesAgainWhenTheFolderIsReplaced)
{
    fs::create_directories(folder);
    const InotifyFolderWatcher watcher{folder, tell};
    EXPECT_TRUE(isTold([&] { fs::rename(folder, scratch.path() / "aside"); }));
    settle();
    EXPECT_TRUE(isTold([&] { fs::create_directory(folder); }));
    settle();
    EXPECT_TRUE(isTold([&] { write(folder / "file", "x"); }));
    settle();

    write(scratch.path() / "aside" / "file", "x");
    const int before = told;
    settle();
    EXPECT_EQ(told, before);
}

TEST_F(InotifyFolderWatcherTest, WatchesAgainWhenTheFoldersAboveWereRemovedToo)
{
    fs::create_directories(folder);
    const InotifyFolderWatcher watcher{folder, tell};
    EXPECT_TRUE(isTold([&] { fs::remove_all(scratch.path() / "a"); }));
    settle();
    EXPECT_TRUE(isTold([&] { fs::create_directories(folder); }));
    settle();
    EXPECT_TRUE(isTold([&] { write(folder / "file", "x"); }));
}

TEST_F(InotifyFolderWatcherTest, IsNotLedAstrayByAFileInThePlaceOfTheFolder)
{
    fs::create_directories(folder.parent_path());
    write(folder, "a file");
    const InotifyFolderWatcher watcher{folder, tell};
    fs::remove(folder);

    EXPECT_TRUE(isTold([&] { fs::create_directory(folder); }));
}

TEST_F(InotifyFolderWatcherTest, TellsNothingAfterItsEnd)
{
    fs::create_directories(folder);
    {
        const InotifyFolderWatcher watcher{folder, tell};
        write(folder / "file", "x");
    }
    settle();

    EXPECT_EQ(told, 0);
}

} // namespace
} // namespace roost::test
