#include "tests/notify/SnapshotPairs.h"

#include "tests/notify/NaivePlan.h"

#include <limits>

namespace roost::test {

namespace {

constexpr Date noon{std::chrono::seconds{1'740'830'400}};

} // namespace

SnapshotPair SnapshotPairs::next()
{
    SnapshotPair pair;
    pair.now = snapshot();
    if (below(20) != 0) {
        pair.before = snapshot();
    }
    pair.known = someOf(naivePlan("p", pair.before ? &*pair.before : nullptr, pair.now, {}).announcedKeys);
    return pair;
}

RoostSnapshot SnapshotPairs::snapshot()
{
    RoostSnapshot made;
    made.generatedAt = noon + std::chrono::milliseconds{oneOf(std::array{-1, 0, 1, 86'399'999})};
    if (below(4) != 0) {
        made.best = best();
    }
    made.posts.failed = oneOf(std::array<std::int64_t, 8>{0, 0, 0, 1, 1, 2, 3, 7});
    for (std::uint64_t count = below(6); count > 0; --count) {
        made.posts.next.push_back(post());
    }
    if (below(4) != 0) {
        made.followers.emplace(RoostSnapshot::Followers{}).total =
            oneOf(std::array<std::int64_t, 5>{-1, 0, 1, 1'204, 999'999});
    }
    return made;
}

RoostSnapshot::BestPost SnapshotPairs::best()
{
    RoostSnapshot::BestPost made;
    made.platform = oneOf(std::array{"bluesky", "x"});
    made.label = oneOf(std::array{"", "Label"});
    made.views = oneOf(std::array<std::int64_t, 16>{-1, 0, 1, 500, 999, 1'000, 1'001, 5'000, 9'999, 10'000,
                                                    10'001, 99'999, 100'000, 100'001, 150'000,
                                                    std::numeric_limits<std::int64_t>::max()});
    made.text = oneOf(std::array{"", "One", "Two"});
    if (below(3) == 0) {
        made.url = WebURL::parse(oneOf(std::array{"https://example.com/1", "https://EXAMPLE.com/1"}));
    }
    return made;
}

RoostSnapshot::Posts::Next SnapshotPairs::post()
{
    constexpr std::array<std::int64_t, 12> offsets{-86'400'000, -14'400'000, -10'800'002, -10'800'001,
                                                   -10'800'000, -10'799'999, -60'000,     -1,
                                                   0,           1,           60'000,      86'400'000};
    RoostSnapshot::Posts::Next made;
    made.id = oneOf(std::array{"a", "b", "c", "d", "e", "f"});
    made.at = noon + std::chrono::milliseconds{oneOf(offsets)};
    made.text = oneOf(std::array{"", "Text"});
    return made;
}

std::set<std::string> SnapshotPairs::someOf(const std::vector<std::string>& keys)
{
    std::set<std::string> some{"p|sent:nobody"};
    for (const std::string& key : keys) {
        if (below(3) == 0) {
            some.insert(key);
        }
    }
    return some;
}

} // namespace roost::test
