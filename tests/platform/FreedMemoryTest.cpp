#include "platform/FreedMemory.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

namespace roost::test {

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)

namespace {

/// Bytes of this process that are in memory.
long resident()
{
    long all = 0;
    long pages = 0;
    std::ifstream{"/proc/self/statm"} >> all >> pages;
    return pages * ::sysconf(_SC_PAGESIZE);
}

} // namespace

TEST(FreedMemory, GoesBackToTheSystemThoughMemoryBehindItIsInUse)
{
    constexpr int blocks = 4'000;
    constexpr int size = 4'000;
    std::vector<std::string> texts;
    for (int i = 0; i < blocks; ++i) {
        texts.emplace_back(size, 'x');
    }
    const std::string behind = std::move(texts.back());
    texts.clear();
    const long before = resident();
    giveBackFreedMemory();
    EXPECT_LT(resident(), before - blocks * size / 2);
    EXPECT_EQ(behind.size(), size);
}

#endif

} // namespace roost::test
