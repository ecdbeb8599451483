#include "platform/FolderLock.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>

namespace roost::test {
namespace {

TEST(FolderLock, IsHeldByOneAtATime)
{
    const ScratchFolder folder;
    auto first = std::make_unique<FolderLock>(folder.path());
    EXPECT_TRUE(first->isHeld());
    // Gives up in time, since nobody lets go.
    EXPECT_FALSE(FolderLock(folder.path()).isHeld());
    first.reset();
    EXPECT_TRUE(FolderLock(folder.path()).isHeld());
}

TEST(FolderLock, IsFreedByTheDeathOfItsHolder)
{
    const ScratchFolder folder;
    {
        ChildProcess holder([&folder](const ChildProcess::Voice& voice) {
            const FolderLock lock(folder.path());
            voice.say(lock.isHeld() ? "held\n" : "not held\n");
            ::pause();
        });
        EXPECT_EQ(holder.line(), "held");
    }
    EXPECT_TRUE(FolderLock(folder.path()).isHeld());
}

TEST(FolderLock, LocksNothingWhereThereIsNoFolder)
{
    const ScratchFolder folder;
    EXPECT_FALSE(FolderLock(folder / "missing").isHeld());
}

} // namespace
} // namespace roost::test
