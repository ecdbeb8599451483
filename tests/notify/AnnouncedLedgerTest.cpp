#include "notify/AnnouncedLedger.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace roost {
namespace {

using testing::ElementsAre;
using testing::Pair;

Date minute(std::int64_t n) { return Date{std::chrono::minutes{n}}; }

TEST(AnnouncedLedgerTest, KeepsTheTimeAtWhichAKeyWasFirstSeen)
{
    AnnouncedLedger ledger;
    ledger.mark({"a", "b", "a"}, minute(5));
    ledger.mark({"c", "a"}, minute(9));
    ledger.mark({"b"}, minute(1));
    EXPECT_THAT(ledger.entries,
                ElementsAre(Pair("a", minute(5)), Pair("b", minute(5)), Pair("c", minute(9))));
    ledger.mark({}, minute(10));
    EXPECT_EQ(ledger.entries.size(), 3U);
}

/// A ledger of `count` entries, one a minute, the oldest named "0000".
AnnouncedLedger full(int count)
{
    AnnouncedLedger ledger;
    for (int i = 0; i < count; ++i) {
        std::string name = std::to_string(i);
        name.insert(0, 4 - name.size(), '0');
        ledger.mark({name}, minute(i));
    }
    return ledger;
}

TEST(AnnouncedLedgerTest, LosesNothingUpToItsLimit)
{
    AnnouncedLedger ledger = full(600);
    ledger.prune(600);
    EXPECT_EQ(ledger, full(600));
    ledger.prune(1'000);
    EXPECT_EQ(ledger, full(600));
}

TEST(AnnouncedLedgerTest, LosesExactlyItsOldestEntryAboveItsLimit)
{
    AnnouncedLedger ledger = full(601);
    ledger.prune(600);
    AnnouncedLedger wanted = full(601);
    wanted.entries.erase("0000");
    EXPECT_EQ(ledger, wanted);
}

TEST(AnnouncedLedgerTest, KeepsOfEqualTimesWhatComesFirstByItsKey)
{
    AnnouncedLedger ledger;
    ledger.mark({"d", "b", "ä", "a", "c"}, minute(5));
    ledger.mark({"z"}, minute(6));
    ledger.mark({"A"}, minute(4));
    ledger.prune(4);
    EXPECT_THAT(ledger.entries, ElementsAre(Pair("a", minute(5)), Pair("b", minute(5)), Pair("c", minute(5)),
                                            Pair("z", minute(6))));
}

TEST(AnnouncedLedgerTest, CanBeEmptied)
{
    AnnouncedLedger ledger = full(3);
    ledger.prune(0);
    EXPECT_EQ(ledger, AnnouncedLedger{});
    ledger.prune(0);
    EXPECT_EQ(ledger, AnnouncedLedger{});
}

TEST(AnnouncedLedgerTest, HoldsTheNewest600OfWhateverHappens)
{
    constexpr std::size_t limit = 600;
    std::mt19937_64 random{600};
    const auto below = [&random](std::uint64_t bound) { return random() % bound; };
    std::size_t pruned = 0;
    for (int sequence = 0; sequence < 10'000; ++sequence) {
        AnnouncedLedger ledger;
        std::vector<std::pair<Date, std::string>> wanted; // newest first, then by key
        for (std::uint64_t step = 0; step < 2; ++step) {
            std::vector<std::string> keys;
            for (std::uint64_t count = step == 0 ? 570 + below(60) : below(40); count > 0; --count) {
                keys.push_back(std::to_string(below(5'000)));
            }
            // The clock may jump in any direction.
            const Date now = minute(static_cast<std::int64_t>(below(4)));
            ledger.mark(keys, now);
            std::ranges::sort(keys);
            keys.erase(std::ranges::unique(keys).begin(), keys.end());
            for (const auto& [date, key] : wanted) {
                const auto [first, last] = std::ranges::equal_range(keys, key);
                keys.erase(first, last);
            }
            for (const std::string& key : keys) {
                wanted.emplace_back(now, key);
            }
            std::ranges::sort(wanted, [](const auto& left, const auto& right) {
                return left.first != right.first ? left.first > right.first : left.second < right.second;
            });
            pruned += wanted.size() > limit ? 1U : 0U;
            wanted.resize(std::min(wanted.size(), limit));
            ledger.prune(limit);
            ASSERT_EQ(ledger.entries.size(), wanted.size()) << sequence;
            for (const auto& [date, key] : wanted) {
                const auto found = ledger.entries.find(key);
                ASSERT_TRUE(found != ledger.entries.end() && found->second == date) << sequence << " " << key;
            }
        }
    }
    EXPECT_GT(pruned, 1'000U);
}

} // namespace
} // namespace roost
