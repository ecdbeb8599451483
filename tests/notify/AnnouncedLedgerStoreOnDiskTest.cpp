#include "model/RealFileSystem.h"
#include "notify/AnnouncedLedgerStore.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <set>

namespace roost {
namespace {

/// The ledger of round `n`: how many keys it has and when follows from `n`, so that a whole one can be told
/// from one that is put together.
AnnouncedLedger round(std::int64_t n)
{
    AnnouncedLedger ledger;
    for (std::int64_t i = 0; i < 1 + n % 40; ++i) {
        ledger.mark({"p|sent:" + std::to_string(i)}, Date{std::chrono::minutes{n}});
    }
    return ledger;
}

/// Which round a ledger is of; -1 when it is none.
std::int64_t roundOf(const AnnouncedLedger& ledger)
{
    if (ledger.entries.empty()) {
        return -1;
    }
    const auto n =
        std::chrono::duration_cast<std::chrono::minutes>(ledger.entries.begin()->second.time_since_epoch())
            .count();
    return ledger == round(n) ? n : -1;
}

class AnnouncedLedgerStoreOnDisk : public testing::Test {
protected:
    test::ScratchFolder scratch;
    RealFileSystem files;
    AnnouncedLedgerStore store{files, scratch / "data" / "BriskenRoost" / "announced.json"};
};

TEST_F(AnnouncedLedgerStoreOnDisk, MakesItsFoldersAndItsFileForTheUserAlone)
{
    ASSERT_TRUE(store.save(round(1)));
    EXPECT_EQ(store.load(), round(1));
    struct stat found{};
    ASSERT_EQ(::stat(store.url().c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777U, 0600U);
    ASSERT_EQ(::stat(store.url().parent_path().c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777U, 0700U);
}

TEST_F(AnnouncedLedgerStoreOnDisk, IsOldOrNewAfterTheWriterWasKilledBeforeAnyStep)
{
    std::set<std::int64_t> found;
    bool isDone = false;
    for (std::size_t step = 0; !isDone; ++step) {
        ASSERT_LT(step, 20U);
        ASSERT_TRUE(store.save(round(1)));
        isDone = test::inChildProcess([&] {
                     test::FailingFileSystem mortal{files};
                     mortal.beforeEach([step](std::size_t before) {
                         if (before == step) {
                             ::raise(SIGKILL);
                         }
                     });
                     return AnnouncedLedgerStore{mortal, store.url()}.save(round(2)) ? "done" : "failed";
                 }) == "done";
        const std::int64_t left = roundOf(store.load());
        EXPECT_TRUE(left == 1 || left == 2) << step;
        found.insert(left);
    }
    EXPECT_EQ(found, (std::set<std::int64_t>{1, 2}));
    ASSERT_TRUE(store.save(round(3)));
    EXPECT_EQ(store.load(), round(3));
    EXPECT_FALSE(std::filesystem::exists(store.url().parent_path() / ".announced.json.new"));
}

TEST_F(AnnouncedLedgerStoreOnDisk, IsWholeWheneverTheWriterIsKilled)
{
    const test::ScratchFolder fast = test::ScratchFolder::inMemory();
    const AnnouncedLedgerStore shared{files, fast / "BriskenRoost" / "announced.json"};
    for (int attempt = 0; attempt < 20; ++attempt) {
        std::int64_t said = 0;
        {
            test::ChildProcess writer{[&shared](const test::ChildProcess::Voice& voice) {
                for (std::int64_t n = 1;; ++n) {
                    voice.say(shared.save(round(n)) ? std::to_string(n) + "\n" : "failed\n");
                }
            }};
            for (int i = 0; i <= attempt; ++i) {
                const std::string line = writer.line();
                ASSERT_NE(line, "failed");
                said = std::stol(line);
            }
        } // killed here, in the middle of whatever it does
        EXPECT_GE(roundOf(shared.load()), said);
        ASSERT_TRUE(shared.save(round(0)));
    }
}

TEST_F(AnnouncedLedgerStoreOnDisk, IsEmptyAndAsItWasWithAFileThatMayNotBeRead)
{
    const std::string said = test::withoutPrivileges(
        [this]() -> std::string {
            if (!store.save(round(1)) || ::chmod(store.url().c_str(), 0000) != 0) {
                return "no file";
            }
            std::string outcome = store.load() == AnnouncedLedger{} ? "empty" : "not empty";
            ::chmod(store.url().c_str(), 0600);
            outcome += store.load() == round(1) ? ", as it was" : ", not as it was";
            ::chmod(store.url().c_str(), 0000);
            outcome += store.save(round(2)) ? ", saved" : ", not saved";
            return outcome + (store.load() == round(2) ? ", replaced" : ", not replaced");
        },
        scratch.path());
    EXPECT_EQ(said, "empty, as it was, saved, replaced");
}

} // namespace
} // namespace roost
