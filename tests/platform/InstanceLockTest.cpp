#include "platform/InstanceLock.h"

#include "tests/support/Poll.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace roost::test {
namespace {

class InstanceLockTest : public testing::Test {
protected:
    ScratchFolder scratch;
    std::filesystem::path file = scratch.path() / "app";
};

TEST_F(InstanceLockTest, IsTakenWhileSomebodyHasIt)
{
    {
        const InstanceLock first{file};
        EXPECT_FALSE(first.isTaken());
        EXPECT_TRUE(InstanceLock{file}.isTaken());
        EXPECT_TRUE(InstanceLock{file}.isTaken());
    }
    EXPECT_FALSE(InstanceLock{file}.isTaken());
}

TEST_F(InstanceLockTest, IsFreeWhenItsProcessWasKilled)
{
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const InstanceLock held{file};
        static_cast<void>(!::write(pipe[1], "x", 1));
        ::pause();
    }
    char byte = 0;
    ASSERT_EQ(::read(pipe[0], &byte, 1), 1);
    EXPECT_TRUE(InstanceLock{file}.isTaken());

    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_FALSE(InstanceLock{file}.isTaken());
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(InstanceLockTest, IsNotInheritedByProgramsThatAreStarted)
{
    auto held = std::make_unique<InstanceLock>(file);
    const pid_t child = ::fork();
    if (child == 0) {
        ::execl("/bin/sleep", "sleep", "30", nullptr);
        ::_exit(1);
    }
    held.reset();
    poll("the lock to be free", [this] { return !InstanceLock{file}.isTaken(); });
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

TEST_F(InstanceLockTest, IsNobodysWhereNoLockCanBeMade)
{
    EXPECT_FALSE(InstanceLock{scratch.path() / "missing" / "app"}.isTaken());
    std::filesystem::create_symlink("/nowhere", file);
    EXPECT_FALSE(InstanceLock{file}.isTaken());
}

} // namespace
} // namespace roost::test
