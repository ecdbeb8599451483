#include "model/WidgetStore.h"

#include "model/RoostJSON.h"
#include "model/RoostStoreFileFields.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/Fixture.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RandomSnapshot.h"

#include <gmock/gmock.h>

namespace roost {
namespace {

using testing::ElementsAre;
using Operation = test::FailingFileSystem::Operation;

class WidgetStoreTest : public testing::Test {
protected:
    RoostStoreFile some(std::uint64_t seed) { return test::RandomSnapshot{seed}.storeFile(); }

    const std::filesystem::path folder = "/data/group";
    test::MemoryFileSystem memory;
    test::FailingFileSystem files{memory};
    WidgetStore store{files, folder};
    test::LogCatcher log;
};

TEST_F(WidgetStoreTest, KeepsItsFileInItsDirectory)
{
    EXPECT_EQ(store.directory(), folder);
    EXPECT_EQ(store.file(), folder / "widget-state.json");
}

TEST_F(WidgetStoreTest, TellsAFileThatCannotBeReadFromOneThatIsNotThere)
{
    EXPECT_FALSE(store.isWithheld());
    ASSERT_TRUE(store.write(some(1)));
    EXPECT_FALSE(store.isWithheld());
    for (const std::errc error :
         {std::errc::io_error, std::errc::too_many_files_open, std::errc::permission_denied}) {
        files.failEvery(Operation::read, std::make_error_code(error));
        EXPECT_TRUE(store.isWithheld());
        EXPECT_EQ(store.read(), std::nullopt);
    }
    files.failEvery(Operation::read, std::make_error_code(std::errc::no_such_file_or_directory));
    EXPECT_FALSE(store.isWithheld());
}

TEST_F(WidgetStoreTest, ReadsWhatItWroteAndLogsNothing)
{
    for (std::uint64_t seed = 0; seed < 50; ++seed) {
        ASSERT_TRUE(store.write(some(seed)));
        ASSERT_EQ(store.read(), some(seed));
    }
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(WidgetStoreTest, MakesItsFolderAndWritesWhatTheEncoderGives)
{
    ASSERT_TRUE(store.write(some(3)));
    EXPECT_EQ(memory.contents(store.file()), RoostJSON::encoder().encode(some(3)));
    EXPECT_THAT(memory.names(folder), ElementsAre("widget-state.json"));
}

TEST_F(WidgetStoreTest, WritesSchema1AndSortedKeys)
{
    RoostStoreFile file;
    file.writtenAt = RoostJSON::parseDate("2025-03-01T12:35:00.001Z").value();
    ASSERT_TRUE(store.write(file));
    EXPECT_EQ(memory.contents(store.file()),
              R"({"accounts":[],"schema":1,"writtenAt":"2025-03-01T12:35:00.001Z"})");
}

TEST_F(WidgetStoreTest, ReadsNothingOutOfAMissingFolderOrFile)
{
    EXPECT_EQ(store.read(), std::nullopt);
    ASSERT_FALSE(memory.makeFolders(folder));
    EXPECT_EQ(store.read(), std::nullopt);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(WidgetStoreTest, ReadsNothingOutOfAFileThatIsNoStoreFile)
{
    const std::string good = test::fixture("store-full.json");
    memory.put(store.file(), good);
    ASSERT_TRUE(store.read());
    for (const std::string& bytes :
         {std::string{}, std::string{"{}"}, std::string{"null"}, good.substr(0, good.size() / 2), good + "x",
          "\xEF\xBB\xBF" + good, test::fixture("store-unknown-status.json"),
          test::fixture("snapshot-full.json"), std::string(1'000'000, '\0')}) {
        memory.put(store.file(), bytes);
        EXPECT_EQ(store.read(), std::nullopt) << bytes.substr(0, 100);
    }
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(WidgetStoreTest, ReadsNothingWhenReadingFails)
{
    ASSERT_TRUE(store.write(some(1)));
    for (const std::errc code :
         {std::errc::io_error, std::errc::permission_denied, std::errc::file_too_large}) {
        files.failEvery(Operation::read, std::make_error_code(code));
        EXPECT_EQ(store.read(), std::nullopt);
    }
    files.recover();
    EXPECT_EQ(store.read(), some(1));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(WidgetStoreTest, ReplacesAFileThatCannotBeRead)
{
    memory.put(store.file(), "{");
    ASSERT_TRUE(store.write(some(1)));
    EXPECT_EQ(store.read(), some(1));
}

TEST_F(WidgetStoreTest, LogsWhyAWriteFailedAndKeepsTheOldFile)
{
    const std::pair<Operation, std::errc> failures[]{{Operation::makeFolders, std::errc::not_a_directory},
                                                     {Operation::openTemporary, std::errc::permission_denied},
                                                     {Operation::write, std::errc::no_space_on_device},
                                                     {Operation::sync, std::errc::io_error},
                                                     {Operation::rename, std::errc::read_only_file_system}};
    ASSERT_TRUE(store.write(some(1)));
    const auto before = memory.contents(store.file());
    for (const auto& [operation, code] : failures) {
        const qsizetype logged = log.lines().size();
        files.failEvery(operation, std::make_error_code(code));
        EXPECT_FALSE(store.write(some(2)));
        EXPECT_EQ(memory.contents(store.file()), before);
        ASSERT_EQ(log.lines().size(), logged + 1);
        const auto line = log.lines().last();
        EXPECT_EQ(line.level, QtCriticalMsg);
        EXPECT_EQ(line.category, "world.brisken.roost.mac");
        EXPECT_EQ(line.message.toStdString(), "Brisken Roost: could not write the widget snapshot (" +
                                                  std::make_error_code(code).message() + ")");
        files.recover();
        EXPECT_EQ(store.read(), some(1));
    }
    ASSERT_TRUE(store.write(some(2)));
    EXPECT_EQ(store.read(), some(2));
}

TEST_F(WidgetStoreTest, SaysThatTheNewFileMayNotOutliveAPowerCutWhenTheFolderCannotBeFlushed)
{
    ASSERT_TRUE(store.write(some(1)));
    files.failEvery(Operation::syncFolder, std::make_error_code(std::errc::io_error));
    EXPECT_FALSE(store.write(some(2)));
    EXPECT_EQ(store.read(), some(2));
    EXPECT_EQ(log.messages("world.brisken.roost.mac"),
              QList<QString>{
                  QStringLiteral("Brisken Roost: could not write the widget snapshot (Input/output error)")});
}

TEST_F(WidgetStoreTest, DoesNotSayAgainWhatHasBeenSaid)
{
    const auto full = std::make_error_code(std::errc::no_space_on_device);
    files.failEvery(Operation::write, full);
    const auto first = store.write(some(1));
    ASSERT_FALSE(first);
    EXPECT_EQ(first.error(), full);
    EXPECT_FALSE(store.write(some(1), first.error()));
    EXPECT_EQ(log.lines().size(), 1);

    files.failEvery(Operation::write, std::make_error_code(std::errc::io_error));
    EXPECT_FALSE(store.write(some(1), first.error()));
    EXPECT_EQ(log.lines().size(), 2);
}

TEST_F(WidgetStoreTest, DoesNotTryAgain)
{
    files.failEvery(Operation::write, std::make_error_code(std::errc::no_space_on_device));
    EXPECT_FALSE(store.write(some(1)));
    EXPECT_EQ(std::ranges::count(files.seen(), Operation::write), 1);
}

} // namespace
} // namespace roost
