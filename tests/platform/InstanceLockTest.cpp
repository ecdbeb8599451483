#include "platform/InstanceLock.h"

#include "tests/support/Poll.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace roost::test {
namespace {

using Kind = InstanceLock::Kind;

class InstanceLockTest : public testing::Test {
protected:
    bool isFree(Kind kind) const { return InstanceLock{file}.take(kind); }

    ScratchFolder scratch;
    std::filesystem::path file = scratch.path() / "app";
};

TEST_F(InstanceLockTest, IsTheAppsAlone)
{
    {
        InstanceLock app{file};
        EXPECT_TRUE(isFree(Kind::exclusive)) << "nobody has it before it is taken";
        EXPECT_TRUE(app.take(Kind::exclusive));
        EXPECT_FALSE(isFree(Kind::exclusive));
        EXPECT_FALSE(isFree(Kind::shared));
        EXPECT_TRUE(app.take(Kind::exclusive)) << "has it already";
        app.release();
        EXPECT_TRUE(isFree(Kind::exclusive));
        EXPECT_TRUE(app.take(Kind::exclusive));
    }
    EXPECT_TRUE(isFree(Kind::exclusive));
}

TEST_F(InstanceLockTest, IsAnyNumberOfCommands)
{
    InstanceLock command{file};
    InstanceLock other{file};
    EXPECT_TRUE(command.take(Kind::shared));
    EXPECT_TRUE(other.take(Kind::shared));
    EXPECT_FALSE(isFree(Kind::exclusive));
    EXPECT_FALSE(command.take(Kind::exclusive)) << "the other is there still";
    other.release();
    EXPECT_TRUE(isFree(Kind::exclusive)) << "who asked in vain holds nothing any more";
}

TEST_F(InstanceLockTest, IsFreeWhenItsProcessWasKilled)
{
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        InstanceLock held{file};
        static_cast<void>(held.take(Kind::exclusive));
        static_cast<void>(!::write(pipe[1], "x", 1));
        ::pause();
    }
    char byte = 0;
    ASSERT_EQ(::read(pipe[0], &byte, 1), 1);
    EXPECT_FALSE(isFree(Kind::shared));

    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(isFree(Kind::exclusive));
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(InstanceLockTest, IsNotInheritedByProgramsThatAreStarted)
{
    auto held = std::make_unique<InstanceLock>(file);
    ASSERT_TRUE(held->take(Kind::exclusive));
    const pid_t child = ::fork();
    if (child == 0) {
        ::execl("/bin/sleep", "sleep", "30", nullptr);
        ::_exit(1);
    }
    held.reset();
    poll("the lock to be free", [this] { return isFree(Kind::exclusive); });
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

TEST_F(InstanceLockTest, IsEverybodysWhereNoLockCanBeMade)
{
    InstanceLock nowhere{scratch.path() / "missing" / "app"};
    EXPECT_TRUE(nowhere.take(Kind::exclusive));
    EXPECT_TRUE(InstanceLock{scratch.path() / "missing" / "app"}.take(Kind::exclusive));
    std::filesystem::create_symlink("/nowhere", file);
    EXPECT_TRUE(isFree(Kind::exclusive));
}

} // namespace
} // namespace roost::test
