#include "notify/AnnouncedLedger.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <optional>
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

TEST(AnnouncedLedgerTest, TakesAKeyThatWasDroppedForANewOne)
{
    AnnouncedLedger ledger = full(3);
    ledger.prune(2);
    ledger.mark({"0000"}, minute(-1));
    EXPECT_THAT(ledger.entries,
                ElementsAre(Pair("0000", minute(-1)), Pair("0001", minute(1)), Pair("0002", minute(2))));
}

constexpr std::size_t nameCount = 2'000;

/// What a ledger must hold, over names that are numbered in their order.
class Reckoning {
public:
    void mark(std::size_t name, Date at)
    {
        if (!held_.at(name)) {
            held_.at(name) = at;
        }
    }

    /// Forgets all but the newest; of one time those that come first. Whether anything was forgotten.
    bool prune(std::size_t keeping)
    {
        std::vector<std::pair<Date::rep, std::size_t>> newestFirst;
        for (std::size_t name = 0; name < held_.size(); ++name) {
            if (held_[name]) {
                newestFirst.emplace_back(-held_[name]->time_since_epoch().count(), name);
            }
        }
        std::ranges::sort(newestFirst);
        for (std::size_t place = keeping; place < newestFirst.size(); ++place) {
            held_.at(newestFirst[place].second).reset();
        }
        return newestFirst.size() > keeping;
    }

    bool describes(const std::map<std::string, Date>& entries, const std::vector<std::string>& names) const
    {
        auto entry = entries.begin();
        for (std::size_t name = 0; name < held_.size(); ++name) {
            if (!held_[name]) {
                continue;
            }
            if (entry == entries.end() || entry->first != names[name] || entry->second != held_[name]) {
                return false;
            }
            ++entry;
        }
        return entry == entries.end();
    }

private:
    std::array<std::optional<Date>, nameCount> held_{};
};

TEST(AnnouncedLedgerTest, HoldsTheNewest600OfWhateverHappens)
{
    constexpr std::size_t limit = 600;
    std::mt19937_64 random{600};
    const auto below = [&random](std::uint64_t bound) { return random() % bound; };
    // The clock may jump in any direction.
    const auto now = [&below] { return minute(static_cast<std::int64_t>(below(4))); };
    std::vector<std::string> names;
    for (std::size_t name = 0; name < nameCount; ++name) {
        names.push_back(std::to_string(10'000 + name));
    }
    AnnouncedLedger firstLedger;
    Reckoning firstWanted;
    for (int i = 0; i < 700; ++i) {
        const auto name = below(nameCount);
        const Date date = now();
        firstLedger.mark({names[name]}, date);
        firstWanted.mark(name, date);
    }
    ASSERT_LT(firstLedger.entries.size(), limit);
    std::size_t pruned = 0;
    std::size_t kept = 0;
    for (int sequence = 0; sequence < 10'000; ++sequence) {
        AnnouncedLedger ledger = firstLedger;
        Reckoning wanted = firstWanted;
        for (std::uint64_t step = below(3) + 1; step > 0; --step) {
            std::vector<std::string> keys;
            const Date date = now();
            for (std::uint64_t count = below(60); count > 0; --count) {
                const auto name = below(nameCount);
                keys.push_back(names[name]);
                wanted.mark(name, date);
            }
            ledger.mark(keys, date);
            ++(wanted.prune(limit) ? pruned : kept);
            ledger.prune(limit);
        }
        ASSERT_TRUE(wanted.describes(ledger.entries, names)) << sequence;
    }
    EXPECT_GT(pruned, 5'000U);
    EXPECT_GT(kept, 5'000U);
}

} // namespace
} // namespace roost
