#include "present/BrandMarkCache.h"

#include "present/BrandMarkData.h"
#include "tests/present/PathElements.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using namespace roost;
using namespace roost::test;

TEST(BrandMarkCache, GivesTheParsedMarkOfEachPlatform)
{
    BrandMarkCache cache;
    for (const auto& [platform, data] : BrandMarkData::paths) {
        const VectorPath* const path = cache.path(platform);
        ASSERT_NE(path, nullptr) << platform;
        EXPECT_EQ(*path, parsed(data)) << platform;
    }
}

TEST(BrandMarkCache, GivesNothingForAPlatformWithoutAMark)
{
    BrandMarkCache cache;
    EXPECT_EQ(cache.path("mastodon"), nullptr);
    EXPECT_EQ(cache.path(""), nullptr);
}

TEST(BrandMarkCache, ParsesAMarkOnce)
{
    BrandMarkCache cache;
    const VectorPath* const first = cache.path("x");
    for (const auto& entry : BrandMarkData::paths) {
        cache.path(entry.platform);
    }
    EXPECT_EQ(cache.path(std::string{"x"}), first);
}

TEST(BrandMarkCache, GivesEveryThreadTheSameMarks)
{
    BrandMarkCache cache;
    constexpr std::size_t threadCount = 8;
    std::vector<std::vector<const VectorPath*>> seen(threadCount);
    {
        std::vector<std::jthread> threads;
        for (auto& mine : seen) {
            threads.emplace_back([&cache, &mine] {
                for (int round = 0; round < 100; ++round) {
                    for (const auto& entry : BrandMarkData::paths) {
                        mine.push_back(cache.path(entry.platform));
                        cache.path("mastodon");
                    }
                }
            });
        }
    }
    for (const auto& marks : seen) {
        EXPECT_EQ(marks, seen.front());
        EXPECT_EQ(marks.front(), cache.path(BrandMarkData::paths.front().platform));
    }
}

} // namespace
