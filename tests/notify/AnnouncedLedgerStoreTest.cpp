#include "notify/AnnouncedLedgerStore.h"

#include "model/RoostJSON.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RandomSnapshot.h"

#include <gmock/gmock.h>

namespace roost {
namespace {

using testing::ElementsAre;
using Operation = test::FailingFileSystem::Operation;
using namespace std::string_literals;

AnnouncedLedger some(std::uint64_t seed)
{
    test::RandomSnapshot random{seed};
    AnnouncedLedger ledger;
    for (std::uint64_t count = 1 + random.below(50); count > 0; --count) {
        ledger.mark({random.text()}, random.date());
    }
    return ledger;
}

class AnnouncedLedgerStoreTest : public testing::Test {
protected:
    const std::filesystem::path folder = "/data/BriskenRoost";
    test::MemoryFileSystem memory;
    test::FailingFileSystem files{memory};
    AnnouncedLedgerStore store{files, folder / "announced.json"};
    test::LogCatcher log;
};

TEST_F(AnnouncedLedgerStoreTest, LiesInTheDataFolderOrElseInTheTemporaryOne)
{
    EXPECT_EQ(AnnouncedLedgerStore::location({"/data", "/tmp"}), "/data/BriskenRoost/announced.json");
    EXPECT_EQ(AnnouncedLedgerStore::location({std::nullopt, "/tmp"}), "/tmp/BriskenRoost/announced.json");
    EXPECT_EQ(store.url(), folder / "announced.json");
}

TEST_F(AnnouncedLedgerStoreTest, LoadsWhatItSavedAndLogsNothing)
{
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
        ASSERT_TRUE(store.save(some(seed)));
        ASSERT_EQ(store.load(), some(seed));
    }
    EXPECT_THAT(memory.names(folder), ElementsAre("announced.json"));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(AnnouncedLedgerStoreTest, WritesAnObjectWithTheSingleMemberEntries)
{
    ASSERT_TRUE(store.save({}));
    EXPECT_EQ(memory.contents(store.url()), R"({"entries":{}})");
    AnnouncedLedger ledger;
    ledger.mark({"p|sent:b", "p|best:x|\"quoted\"\n"},
                RoostJSON::parseDate("2025-03-01T12:00:00.001Z").value());
    ASSERT_TRUE(store.save(ledger));
    EXPECT_EQ(memory.contents(store.url()),
              R"({"entries":{"p|best:x|\"quoted\"\n":"2025-03-01T12:00:00.001Z",)"
              R"("p|sent:b":"2025-03-01T12:00:00.001Z"}})");
}

TEST_F(AnnouncedLedgerStoreTest, ReadsDatesAsTheServiceWritesThem)
{
    memory.put(store.url(), R"({"version":2,"entries":{"a":"2025-03-01T13:00:00+01:00"}})");
    EXPECT_THAT(store.load().entries,
                ElementsAre(testing::Pair("a", RoostJSON::parseDate("2025-03-01T12:00:00Z").value())));
}

TEST_F(AnnouncedLedgerStoreTest, IsEmptyWithoutAFile)
{
    EXPECT_EQ(store.load(), AnnouncedLedger{});
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(AnnouncedLedgerStoreTest, IsEmptyWithAFileThatIsNoLedgerAndLeavesIt)
{
    const std::string good = R"({"entries":{"a":"2025-03-01T12:00:00Z"}})";
    memory.put(store.url(), good);
    ASSERT_EQ(store.load().entries.size(), 1U);
    for (const std::string& bytes :
         {""s, "{}"s, "null"s, "[]"s, R"({"entries":null})"s, R"({"entries":[]})"s, R"({"Entries":{}})"s,
          R"({"entries":{"a":1}})"s, R"({"entries":{"a":"2025-03-01"}})"s,
          R"({"entries":{"a":"2025-03-01T12:00:00Z","b":null}})"s, good.substr(0, good.size() - 1),
          good + "x", "\xEF\xBB\xBF" + good, std::string(100'000, '\0')}) {
        memory.put(store.url(), bytes);
        EXPECT_EQ(store.load(), AnnouncedLedger{}) << bytes.substr(0, 100);
        EXPECT_EQ(memory.contents(store.url()), bytes);
    }
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(AnnouncedLedgerStoreTest, IsEmptyWhenReadingFailsAndLeavesTheFile)
{
    ASSERT_TRUE(store.save(some(1)));
    for (const std::errc code :
         {std::errc::io_error, std::errc::permission_denied, std::errc::file_too_large}) {
        files.failEvery(Operation::read, std::make_error_code(code));
        EXPECT_EQ(store.load(), AnnouncedLedger{});
    }
    files.recover();
    EXPECT_EQ(store.load(), some(1));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(AnnouncedLedgerStoreTest, KeepsAFileThatIsNoLedgerUntilASaveIsGood)
{
    memory.put(store.url(), "somebody's notes");
    for (const Operation operation :
         {Operation::openTemporary, Operation::write, Operation::sync, Operation::rename}) {
        files.failEvery(operation, std::make_error_code(std::errc::no_space_on_device));
        EXPECT_EQ(store.load(), AnnouncedLedger{});
        EXPECT_FALSE(store.save(some(1)));
        EXPECT_EQ(memory.contents(store.url()), "somebody's notes");
        EXPECT_THAT(memory.names(folder), ElementsAre("announced.json"));
    }
    files.recover();
    EXPECT_TRUE(store.save(some(1)));
    EXPECT_EQ(store.load(), some(1));
}

TEST_F(AnnouncedLedgerStoreTest, KeepsTheOldLedgerWhenASaveFailsAtAnyStepAndSavesTheNextOne)
{
    ASSERT_TRUE(store.save(some(1)));
    const std::size_t steps = files.seen().size();
    ASSERT_GT(steps, 4U);
    for (std::size_t step = 0; step < steps; ++step) {
        ASSERT_TRUE(store.save(some(1)));
        files.failAfter(step, std::make_error_code(std::errc::io_error));
        const bool isSaved = store.save(some(2)).has_value();
        files.recover();
        // What fails at the first step, making a folder that is there, does not matter.
        EXPECT_EQ(isSaved, step == 0) << step;
        // With the last step, flushing the folder, the new file is already in its place.
        EXPECT_EQ(store.load(), step == 0 || step + 1 == steps ? some(2) : some(1)) << step;
    }
    EXPECT_TRUE(store.save(some(3)));
    EXPECT_EQ(store.load(), some(3));
    EXPECT_TRUE(log.lines().isEmpty());
}

} // namespace
} // namespace roost
