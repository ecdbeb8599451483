#include "model/FileSystem.h"

#include "model/RealFileSystem.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

namespace roost {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using Operation = test::FailingFileSystem::Operation;

constexpr std::size_t noLimit = 1'000'000;

std::error_code error(std::errc code) { return std::make_error_code(code); }

/// What every file system has to do, the one of the machine and the one that stands in for it.
template <class Files>
class AnyFileSystem : public testing::Test {
protected:
    void SetUp() override { ASSERT_FALSE(files.makeFolders(folder)); }

    void put(const std::filesystem::path& path, std::string_view bytes)
    {
        ASSERT_FALSE(replaceFile(files, path, bytes));
    }

    Files files;
    test::ScratchFolder scratch;
    std::filesystem::path folder = scratch / "folder";
    std::filesystem::path file = folder / "file";
};

using FileSystems = testing::Types<RealFileSystem, test::MemoryFileSystem>;
TYPED_TEST_SUITE(AnyFileSystem, FileSystems);

TYPED_TEST(AnyFileSystem, MakesAllFoldersThatAreMissingAndIsFineWithThoseThatExist)
{
    const auto deep = this->folder / "a" / "b" / "c";
    EXPECT_FALSE(this->files.makeFolders(deep));
    EXPECT_FALSE(this->files.makeFolders(deep));
    EXPECT_FALSE(this->files.makeFolders(this->folder / "a" / "b"));
    EXPECT_FALSE(this->files.makeFolders(this->folder / "x" / ""));
    this->put(deep / "file", "1");
    this->put(this->folder / "x" / "file", "2");
    EXPECT_EQ(this->files.read(deep / "file", noLimit), "1");
}

TYPED_TEST(AnyFileSystem, MakesNoFolderWhereAFileIs)
{
    this->put(this->file, "1");
    EXPECT_EQ(this->files.makeFolders(this->file), error(std::errc::not_a_directory));
    EXPECT_EQ(this->files.makeFolders(this->file / "deeper"), error(std::errc::not_a_directory));
    EXPECT_EQ(this->files.read(this->file, noLimit), "1");
}

TYPED_TEST(AnyFileSystem, ReadsAllBytesUpToTheLimit)
{
    const std::string bytes = "a\0\n\xFF"s + std::string(200'000, 'x');
    this->put(this->file, bytes);
    EXPECT_EQ(this->files.read(this->file, noLimit), bytes);
    EXPECT_EQ(this->files.read(this->file, bytes.size()), bytes);
    const auto over = this->files.read(this->file, bytes.size() - 1);
    ASSERT_FALSE(over);
    EXPECT_EQ(over.error(), error(std::errc::file_too_large));
    this->put(this->file, "");
    EXPECT_EQ(this->files.read(this->file, 0), "");
}

TYPED_TEST(AnyFileSystem, SaysWhyNothingCanBeRead)
{
    const auto missing = this->files.read(this->file, noLimit);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), error(std::errc::no_such_file_or_directory));
    const auto isFolder = this->files.read(this->folder, noLimit);
    ASSERT_FALSE(isFolder);
    EXPECT_EQ(isFolder.error(), error(std::errc::invalid_argument));
}

TYPED_TEST(AnyFileSystem, AppendsToATemporaryFileThatStartsEmpty)
{
    this->put(this->file, "left by a writer that died");
    {
        auto temporary = this->files.openTemporary(this->file);
        ASSERT_TRUE(temporary);
        EXPECT_EQ(this->files.read(this->file, noLimit), "");
        EXPECT_FALSE((*temporary)->write("one "));
        EXPECT_FALSE((*temporary)->write(""));
        EXPECT_FALSE((*temporary)->write("two"));
        EXPECT_FALSE((*temporary)->sync());
    }
    // Left where it is.
    EXPECT_EQ(this->files.read(this->file, noLimit), "one two");
}

TYPED_TEST(AnyFileSystem, GivesATemporaryFileToOneWriterAtATime)
{
    auto first = this->files.openTemporary(this->file);
    ASSERT_TRUE(first);
    EXPECT_FALSE((*first)->write("first"));
    const auto second = this->files.openTemporary(this->file);
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error(), error(std::errc::device_or_resource_busy));
    EXPECT_EQ(this->files.read(this->file, noLimit), "first");
    first->reset();
    EXPECT_TRUE(this->files.openTemporary(this->file));
}

TYPED_TEST(AnyFileSystem, GivesANewTemporaryFileWhileAnotherKeepsTheOneItHasPutInPlace)
{
    auto first = this->files.openTemporary(this->folder / "new");
    ASSERT_TRUE(first);
    EXPECT_FALSE((*first)->write("first"));
    EXPECT_FALSE(this->files.rename(this->folder / "new", this->file));
    auto second = this->files.openTemporary(this->folder / "new");
    ASSERT_TRUE(second);
    EXPECT_FALSE((*second)->write("second"));
    EXPECT_EQ(this->files.read(this->file, noLimit), "first");
}

TYPED_TEST(AnyFileSystem, SaysWhyNoTemporaryFileCanBeHad)
{
    const auto nowhere = this->files.openTemporary(this->folder / "missing" / "file");
    ASSERT_FALSE(nowhere);
    EXPECT_EQ(nowhere.error(), error(std::errc::no_such_file_or_directory));
    const auto isFolder = this->files.openTemporary(this->folder);
    ASSERT_FALSE(isFolder);
    EXPECT_EQ(isFolder.error(), error(std::errc::is_a_directory));
}

TYPED_TEST(AnyFileSystem, RenamesOverWhatIsThere)
{
    this->put(this->file, "old");
    this->put(this->folder / "other", "new");
    EXPECT_FALSE(this->files.rename(this->folder / "other", this->file));
    EXPECT_EQ(this->files.read(this->file, noLimit), "new");
    EXPECT_FALSE(this->files.read(this->folder / "other", noLimit));
    EXPECT_FALSE(this->files.rename(this->file, this->folder / "third"));
    EXPECT_EQ(this->files.read(this->folder / "third", noLimit), "new");
}

TYPED_TEST(AnyFileSystem, SaysWhyNothingCanBeRenamed)
{
    this->put(this->file, "old");
    EXPECT_EQ(this->files.rename(this->folder / "missing", this->file),
              error(std::errc::no_such_file_or_directory));
    EXPECT_EQ(this->files.rename(this->file, this->folder / "missing" / "file"),
              error(std::errc::no_such_file_or_directory));
    EXPECT_FALSE(this->files.makeFolders(this->folder / "sub"));
    EXPECT_EQ(this->files.rename(this->file, this->folder / "sub"), error(std::errc::is_a_directory));
    EXPECT_EQ(this->files.read(this->file, noLimit), "old");
}

TYPED_TEST(AnyFileSystem, FlushesAFolderThatExists)
{
    EXPECT_FALSE(this->files.syncFolder(this->folder));
    EXPECT_EQ(this->files.syncFolder(this->folder / "missing"), error(std::errc::no_such_file_or_directory));
}

TYPED_TEST(AnyFileSystem, RemovesAFileAndIsFineWithoutOne)
{
    this->put(this->file, "1");
    EXPECT_FALSE(this->files.remove(this->file));
    EXPECT_FALSE(this->files.read(this->file, noLimit));
    EXPECT_FALSE(this->files.remove(this->file));
    EXPECT_EQ(this->files.remove(this->folder), error(std::errc::is_a_directory));
}

class ReplaceFile : public testing::Test {
protected:
    const std::filesystem::path folder = "/data/roost";
    const std::filesystem::path file = "/data/roost/state.json";
    const std::filesystem::path beside = "/data/roost/.state.json.new";
    test::MemoryFileSystem memory;
    test::FailingFileSystem files{memory};
};

TEST_F(ReplaceFile, FlushesTheBytesBeforeTheNameAndTheFolderAfterIt)
{
    memory.put(file, "old");
    EXPECT_FALSE(replaceFile(files, file, "new"));
    EXPECT_EQ(memory.contents(file), "new");
    EXPECT_THAT(memory.names(folder), ElementsAre("state.json"));
    EXPECT_THAT(files.seen(), ElementsAre(Operation::openTemporary, Operation::write, Operation::sync,
                                          Operation::rename, Operation::syncFolder));
}

TEST_F(ReplaceFile, MakesAFileThatWasNotThere)
{
    ASSERT_FALSE(memory.makeFolders(folder));
    EXPECT_FALSE(replaceFile(files, file, "new"));
    EXPECT_EQ(memory.contents(file), "new");
}

TEST_F(ReplaceFile, LeavesTheOldFileWhicheverStepFailsBeforeTheLast)
{
    constexpr std::size_t steps = 5;
    for (std::size_t step = 0; step < steps; ++step) {
        memory.put(file, "old");
        files.failAfter(step, error(std::errc::no_space_on_device));
        EXPECT_EQ(replaceFile(files, file, "new"), error(std::errc::no_space_on_device)) << step;
        EXPECT_EQ(memory.contents(file), step + 1 < steps ? "old" : "new") << step;
        EXPECT_THAT(memory.names(folder), ElementsAre("state.json")) << step;
        EXPECT_FALSE(replaceFile(files, file, "newer"));
        EXPECT_EQ(memory.contents(file), "newer");
    }
}

TEST_F(ReplaceFile, LeavesNoFileWhereThereWasNoneWhicheverStepFailsBeforeTheLast)
{
    ASSERT_FALSE(memory.makeFolders(folder));
    for (std::size_t step = 0; step < 4; ++step) {
        files.failAfter(step, error(std::errc::io_error));
        EXPECT_EQ(replaceFile(files, file, "new"), error(std::errc::io_error)) << step;
        EXPECT_TRUE(memory.names(folder).empty()) << step;
    }
}

TEST_F(ReplaceFile, TellsTheFirstFailureWhenTheTemporaryFileCannotBeRemovedEither)
{
    memory.put(file, "old");
    files.failEvery(Operation::remove, error(std::errc::io_error));
    files.failAfter(1, error(std::errc::no_space_on_device));
    EXPECT_EQ(replaceFile(files, file, "a long new text"), error(std::errc::no_space_on_device));
    EXPECT_EQ(memory.contents(file), "old");
    EXPECT_EQ(memory.contents(beside), "a long ");
    files.recover();
    EXPECT_FALSE(replaceFile(files, file, "new"));
    EXPECT_EQ(memory.contents(file), "new");
    EXPECT_THAT(memory.names(folder), ElementsAre("state.json"));
}

TEST_F(ReplaceFile, LeavesTheTemporaryFileOfAnotherWriterAlone)
{
    memory.put(file, "old");
    auto other = memory.openTemporary(beside);
    ASSERT_TRUE(other);
    ASSERT_FALSE((*other)->write("of another"));
    EXPECT_EQ(replaceFile(files, file, "new"), error(std::errc::device_or_resource_busy));
    EXPECT_EQ(memory.contents(file), "old");
    EXPECT_EQ(memory.contents(beside), "of another");
}

TEST_F(ReplaceFile, KeepsTheTemporaryFileForItselfUntilItHasItsName)
{
    memory.put(file, "old");
    std::vector<bool> couldOpen;
    files.beforeEach([&](std::size_t before) {
        if (before > 0) {
            couldOpen.push_back(memory.openTemporary(beside).has_value());
        }
    });
    EXPECT_FALSE(replaceFile(files, file, "new"));
    // Before write, sync and rename; before the folder is flushed the name is free again.
    EXPECT_THAT(couldOpen, ElementsAre(false, false, false, true));
    EXPECT_EQ(memory.contents(file), "new");
}

TEST_F(ReplaceFile, LeavesOldOrNewWholeAfterAPowerCutBeforeAnyStep)
{
    using enum test::MemoryFileSystem::UnflushedNames;
    constexpr std::size_t steps = 5;
    for (const auto names : {lost, kept}) {
        for (std::size_t step = 0; step <= steps; ++step) {
            test::MemoryFileSystem disk;
            disk.put(file, "old");
            test::FailingFileSystem writer{disk};
            std::optional<test::MemoryFileSystem> afterwards;
            writer.beforeEach([&](std::size_t before) {
                if (before == step) {
                    afterwards = disk;
                }
            });
            ASSERT_FALSE(replaceFile(writer, file, "new"));
            ASSERT_EQ(afterwards.has_value(), step < steps);
            test::MemoryFileSystem& left = afterwards ? *afterwards : disk;
            left.cutPower(names);
            const bool isRenamed = step == steps || (step == steps - 1 && names == kept);
            EXPECT_EQ(left.contents(file), isRenamed ? "new" : "old") << step;
            EXPECT_FALSE(replaceFile(left, file, "newer"));
            EXPECT_EQ(left.contents(file), "newer");
        }
    }
}

} // namespace
} // namespace roost
