#include "present/BrandMarkCache.h"

#include "present/BrandMarkData.h"
#include "tests/present/PathElements.h"

#include <gtest/gtest.h>

#include <barrier>
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
    // Many caches, since only the first look at one can go wrong.
    constexpr int rounds = 300;
    constexpr std::size_t threadCount = 4;
    for (int round = 0; round < rounds; ++round) {
        BrandMarkCache cache;
        std::vector<std::vector<const VectorPath*>> seen(threadCount);
        {
            std::barrier together{threadCount};
            std::vector<std::jthread> threads;
            for (auto& mine : seen) {
                threads.emplace_back([&cache, &mine, &together] {
                    for (const auto& entry : BrandMarkData::paths) {
                        together.arrive_and_wait();
                        mine.push_back(cache.path(entry.platform));
                        cache.path("mastodon");
                    }
                });
            }
        }
        for (const auto& marks : seen) {
            ASSERT_EQ(marks, seen.front());
        }
        for (std::size_t i = 0; i < BrandMarkData::paths.size(); ++i) {
            ASSERT_EQ(cache.path(BrandMarkData::paths[i].platform), seen.front()[i]);
        }
    }
}

} // namespace
