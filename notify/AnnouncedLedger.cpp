#include "notify/AnnouncedLedger.h"

#include <algorithm>

namespace roost {

void AnnouncedLedger::mark(const std::vector<std::string>& keys, Date at)
{
    for (const std::string& key : keys) {
        entries.try_emplace(key, at);
    }
}

void AnnouncedLedger::prune(std::size_t keeping)
{
    if (entries.size() <= keeping) {
        return;
    }
    using Entry = decltype(entries)::iterator;
    std::vector<Entry> newestFirst;
    newestFirst.reserve(entries.size());
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        newestFirst.push_back(entry);
    }
    std::ranges::sort(newestFirst, [](Entry left, Entry right) {
        return left->second != right->second ? left->second > right->second : left->first < right->first;
    });
    for (std::size_t dropped = keeping; dropped < newestFirst.size(); ++dropped) {
        entries.erase(newestFirst[dropped]);
    }
}

} // namespace roost
