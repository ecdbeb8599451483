#include "programs/brisken-roost/AccountFile.h"

#include "tests/programs/brisken-roost/AccountWorld.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FailingFileSystem.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

class AccountFileTest : public AccountWorld {};

const SyncOutcome::Any unreachable = SyncOutcome::Failed{{SyncReason::Kind::unreachable, {}}};

TEST_F(AccountFileTest, HasNoRecordsWithoutAFile)
{
    EXPECT_THAT(file().records(), IsEmpty());
    EXPECT_EQ(file().record("a"), std::nullopt);
}

TEST_F(AccountFileTest, AppendsARecordForFreshNumbers)
{
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h)})));
    EXPECT_TRUE(file().note("b", SyncOutcome::Updated{snapshotOf("b", 2)}));
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 1, 1h), recordOf("b", 2, 0s)}));
}

TEST_F(AccountFileTest, ChangesARecordInItsPlace)
{
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h), recordOf("b", 2, 1h)})));
    EXPECT_TRUE(file().note("a", SyncOutcome::Updated{snapshotOf("a", 3)}));
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 3, 0s), recordOf("b", 2, 1h)}));
    EXPECT_EQ(file().record("a"), recordOf("a", 3, 0s));
}

TEST_F(AccountFileTest, NotesAFailureOfAKnownProfileAlone)
{
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h)})));
    EXPECT_TRUE(file().note("a", unreachable));
    EXPECT_TRUE(file().note("b", unreachable));
    RoostAccountRecord tried = recordOf("a", 1, 1h);
    tried.lastAttemptAt = noon;
    EXPECT_EQ(store.read(), fileOf({tried}));
}

TEST_F(AccountFileTest, RemovesOneRecordAndKeepsTheOrderOfTheOthers)
{
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h), recordOf("b", 2, 1h), recordOf("c", 3, 1h)})));
    EXPECT_TRUE(file().remove("b"));
    EXPECT_TRUE(file().remove("x"));
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 1, 1h), recordOf("c", 3, 1h)}));
    EXPECT_TRUE(file().remove("a"));
    EXPECT_TRUE(file().remove("c"));
    EXPECT_EQ(store.read(), fileOf({}));
}

TEST_F(AccountFileTest, LosesNoRecordWhenProcessesChangeItAtOnce)
{
    ASSERT_TRUE(store.write(fileOf({})));
    constexpr int rounds = 15;
    const auto noting = [this](const std::string& prefix) {
        return [this, prefix](const ChildProcess::Voice&) {
            for (int i = 0; i < rounds; ++i) {
                const std::string id = prefix + std::to_string(i);
                file().note(id, SyncOutcome::Updated{snapshotOf(id, i)});
            }
        };
    };
    ChildProcess first(noting("a"));
    ChildProcess second(noting("b"));
    first.wait();
    second.wait();
    EXPECT_EQ(file().records().size(), 2 * rounds);
}

TEST_F(AccountFileTest, ReplacesNoFileThatItCannotRead)
{
    ASSERT_TRUE(store.write(fileOf({recordOf("a", 1, 1h)})));
    FailingFileSystem failing(files);
    failing.failEvery(FailingFileSystem::Operation::read,
                      std::make_error_code(std::errc::too_many_files_open));
    const AccountFile blind{{failing, folder.path().toStdString()}, [] { return noon; }};
    EXPECT_FALSE(blind.note("b", SyncOutcome::Updated{snapshotOf("b", 2)}));
    EXPECT_EQ(store.read(), fileOf({recordOf("a", 1, 1h)}));
}

TEST_F(AccountFileTest, SaysWhenItCannotBeWritten)
{
    const AccountFile nowhere{{files, "/proc/nowhere"}, [] { return noon; }};
    EXPECT_FALSE(nowhere.note("a", SyncOutcome::Updated{snapshotOf("a", 1)}));
}

} // namespace
} // namespace roost::test
