#include "model/RealFileSystem.h"
#include "model/WidgetStore.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <set>

namespace roost {
namespace {

/// The file of round `n`: how many accounts it has and what is in them follows from `n`, so that a reader can
/// tell a whole file from one that is put together.
RoostStoreFile round(std::int64_t n)
{
    RoostStoreFile file;
    file.schema = n;
    for (std::int64_t i = 0; i < 1 + n % 40; ++i) {
        RoostAccountRecord record;
        record.profileId = std::to_string(i);
        record.profileName = std::to_string(n);
        file.accounts.push_back(record);
    }
    return file;
}

/// A file too large for the disks and limits of these tests.
RoostStoreFile large()
{
    RoostStoreFile file = round(2);
    file.accounts[0].profileName = std::string(1'000'000, 'x');
    return file;
}

class WidgetStoreOnDisk : public testing::Test {
protected:
    /// Tries to write a file that does not get through, and says what came of it.
    static std::string outcomeOf(const WidgetStore& store, const RoostStoreFile& file)
    {
        const test::LogCatcher log;
        const std::string before = test::bytesOf(store.file());
        const bool written = store.write(file).has_value();
        std::string said = written ? "written" : "failed";
        for (const auto& line : log.lines()) {
            said += "; " + line.message.toStdString();
        }
        const bool isLeft = std::filesystem::exists(store.directory() / ".widget-state.json.new");
        return said + (test::bytesOf(store.file()) == before ? "; old file as it was" : "; file changed") +
               (isLeft ? "; temporary file left" : "");
    }

    static std::string failure(const std::string& reason)
    {
        return "failed; Brisken Roost: could not write the widget snapshot (" + reason +
               "); old file as it was";
    }

    test::ScratchFolder scratch;
    RealFileSystem files;
    WidgetStore store{files, scratch / "group"};
};

TEST_F(WidgetStoreOnDisk, MakesItsFolderAndItsFileForTheUserAlone)
{
    ASSERT_TRUE(store.write(round(1)));
    EXPECT_EQ(store.read(), round(1));
    struct stat found{};
    ASSERT_EQ(::stat(store.file().c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777U, 0600U);
    ASSERT_EQ(::stat(store.directory().c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777U, 0700U);
}

TEST_F(WidgetStoreOnDisk, KeepsTheOldFileOnAFullDisk)
{
    ASSERT_TRUE(std::filesystem::create_directory(scratch / "group"));
    const std::string said = test::inChildProcess([this]() -> std::string {
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("none", store.directory().c_str(), "tmpfs", 0, "size=256k,mode=700") != 0) {
            return "no disk";
        }
        if (!store.write(round(1))) {
            return "the first file does not fit";
        }
        std::string outcome = outcomeOf(store, large());
        outcome += store.read() == round(1) ? "; read" : "; not read";
        outcome += store.write(round(3)) ? "; next one written" : "; next one failed";
        return outcome;
    });
    if (said == "no disk") {
        GTEST_SKIP()
            << "only the administrator can mount a small disk; a limit on the size of files stands in for it";
    }
    EXPECT_EQ(said, failure("No space left on device") + "; read; next one written");
}

TEST_F(WidgetStoreOnDisk, KeepsTheOldFileWhenTheNewOneIsLargerThanTheLimitOfTheProcess)
{
    ASSERT_TRUE(store.write(round(1)));
    EXPECT_EQ(test::inChildProcess([this]() -> std::string {
                  const rlimit limit{65'536, 65'536};
                  ::signal(SIGXFSZ, SIG_IGN);
                  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) {
                      return "no limit";
                  }
                  return outcomeOf(store, large());
              }),
              failure("File too large"));
    EXPECT_EQ(store.read(), round(1));
}

TEST_F(WidgetStoreOnDisk, KeepsTheOldFileInAFolderThatMayNotBeWritten)
{
    const std::string said = test::withoutPrivileges(
        [this]() -> std::string {
            if (!store.write(round(1)) || ::chmod(store.directory().c_str(), 0500) != 0) {
                return "no folder";
            }
            const std::string outcome = outcomeOf(store, round(2));
            ::chmod(store.directory().c_str(), 0700);
            return outcome;
        },
        scratch.path());
    EXPECT_EQ(said, failure("Permission denied"));
}

TEST_F(WidgetStoreOnDisk, LeavesAFileThatStandsWhereTheFolderShouldBe)
{
    test::putBytes(scratch / "group", "somebody's file");
    EXPECT_EQ(outcomeOf(store, round(1)), failure("Not a directory"));
    EXPECT_EQ(test::bytesOf(scratch / "group"), "somebody's file");
    EXPECT_EQ(store.read(), std::nullopt);
}

TEST_F(WidgetStoreOnDisk, LeavesAFolderThatStandsWhereTheFileShouldBe)
{
    std::filesystem::create_directories(store.file());
    EXPECT_EQ(outcomeOf(store, round(1)), failure("Is a directory"));
    EXPECT_TRUE(std::filesystem::is_directory(store.file()));
    EXPECT_EQ(store.read(), std::nullopt);
}

TEST_F(WidgetStoreOnDisk, ShowsAReaderInAnotherProcessOnlyWholeFiles)
{
    constexpr std::int64_t rounds = 10'000;
    // In memory, where flushing costs nothing: what a reader sees does not hang on it.
    const test::ScratchFolder fast = test::ScratchFolder::inMemory();
    const WidgetStore shared{files, fast / "group"};
    ASSERT_TRUE(shared.write(round(0)));

    test::ChildProcess reader{[&shared](const test::ChildProcess::Voice& voice) {
        voice.say("reading\n");
        std::set<std::int64_t> seen;
        std::int64_t newest = 0;
        while (newest < rounds) {
            const auto file = shared.read();
            if (!file || *file != round(file->schema) || file->schema < newest) {
                voice.say("a file that is not whole, or older than one before\n");
                return;
            }
            newest = file->schema;
            seen.insert(newest);
        }
        voice.say(std::to_string(seen.size()) + "\n");
    }};
    ASSERT_EQ(reader.line(), "reading");
    for (std::int64_t n = 1; n <= rounds; ++n) {
        ASSERT_TRUE(shared.write(round(n))) << n;
    }
    const std::string said = reader.line();
    ASSERT_NE(said.find_first_of("0123456789"), std::string::npos) << said;
    // Otherwise it did not read while the file was being replaced.
    EXPECT_GT(std::stol(said), 20);
}

TEST_F(WidgetStoreOnDisk, IsOldOrNewAfterTheWriterWasKilledBeforeAnyStep)
{
    std::set<std::int64_t> found;
    bool isDone = false;
    for (std::size_t step = 0; !isDone; ++step) {
        ASSERT_LT(step, 20U);
        ASSERT_TRUE(store.write(round(1)));
        isDone = test::inChildProcess([&] {
                     test::FailingFileSystem mortal{files};
                     mortal.beforeEach([step](std::size_t before) {
                         if (before == step) {
                             ::raise(SIGKILL);
                         }
                     });
                     return WidgetStore{mortal, store.directory()}.write(round(2)) ? "done" : "failed";
                 }) == "done";
        const auto left = store.read();
        ASSERT_TRUE(left) << step;
        EXPECT_EQ(*left, round(left->schema)) << step;
        EXPECT_TRUE(left->schema == 1 || left->schema == 2) << step;
        found.insert(left->schema);
    }
    EXPECT_EQ(found, (std::set<std::int64_t>{1, 2}));
    ASSERT_TRUE(store.write(round(3)));
    EXPECT_FALSE(std::filesystem::exists(store.directory() / ".widget-state.json.new"));
}

TEST_F(WidgetStoreOnDisk, IsWholeWheneverTheWriterIsKilled)
{
    const test::ScratchFolder fast = test::ScratchFolder::inMemory();
    const WidgetStore shared{files, fast / "group"};
    for (int attempt = 0; attempt < 20; ++attempt) {
        std::int64_t said = 0;
        {
            test::ChildProcess writer{[&shared](const test::ChildProcess::Voice& voice) {
                for (std::int64_t n = 1;; ++n) {
                    voice.say(shared.write(round(n)) ? std::to_string(n) + "\n" : "failed\n");
                }
            }};
            for (int i = 0; i <= attempt; ++i) {
                const std::string line = writer.line();
                ASSERT_NE(line, "failed");
                said = std::stol(line);
            }
        } // killed here, in the middle of whatever it does
        const auto left = shared.read();
        ASSERT_TRUE(left);
        EXPECT_EQ(*left, round(left->schema));
        EXPECT_GE(left->schema, said);
        ASSERT_TRUE(shared.write(round(0)));
    }
}

} // namespace
} // namespace roost
