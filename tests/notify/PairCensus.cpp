#include "tests/notify/PairCensus.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <ranges>
#include <span>
#include <utility>

namespace roost::test {

namespace {

using BestPost = RoostSnapshot::BestPost;
using Next = RoostSnapshot::Posts::Next;

constexpr std::array<std::int64_t, 3> thresholds{1'000, 10'000, 100'000};

constexpr auto most = std::numeric_limits<std::int64_t>::max();

bool isAmong(std::span<const std::int64_t> numbers, std::int64_t number)
{
    return std::ranges::find(numbers, number) != numbers.end();
}

std::string milestoneOf(const BestPost& best, std::int64_t threshold)
{
    return "p|milestone:" + best.key() + ":" + std::to_string(threshold);
}

/// The thresholds that the best post passed, ascending.
std::vector<std::int64_t> crossed(const RoostSnapshot& before, const BestPost& best)
{
    const std::int64_t views = before.best ? before.best->views : 0;
    std::vector<std::int64_t> passed;
    std::ranges::copy_if(thresholds, std::back_inserter(passed),
                         [&](std::int64_t each) { return each > views && each <= best.views; });
    return passed;
}

/// The posts that count as published or failed, earliest first; those of one time in the order of the queue.
std::vector<Next> vanished(const SnapshotPair& pair, const RoostSnapshot& before)
{
    std::multimap<Date, Next> gone;
    for (const Next& post : before.posts.next) {
        if (post.at <= pair.now.generatedAt &&
            std::ranges::find(pair.now.posts.next, post.id, &Next::id) == pair.now.posts.next.end()) {
            gone.emplace(post.at, post);
        }
    }
    std::vector<Next> earliestFirst;
    std::ranges::copy(gone | std::views::values, std::back_inserter(earliestFirst));
    return earliestFirst;
}

} // namespace

void PairCensus::takeBest(const SnapshotPair& pair, const RoostSnapshot& before)
{
    count(before.best && !pair.now.best, "the best post is gone");
    count(!before.best && pair.now.best, "the first best post");
    if (!pair.now.best) {
        return;
    }
    const BestPost& best = *pair.now.best;
    const auto passed = crossed(before, best);
    const bool known = !passed.empty() && pair.known.contains(milestoneOf(best, passed.back()));
    count(best.url.has_value(), "a best post with an address");
    count(!best.url, "a best post without an address");
    count(isAmong(passed, best.views), "a threshold reached exactly");
    count(best.views < most && isAmong(thresholds, best.views + 1), "a threshold missed by one");
    count(passed.size() == 1, "one threshold passed");
    count(passed.size() == 2, "two thresholds passed");
    count(passed.size() == 3, "three thresholds passed");
    count(known, "the highest passed threshold is known");
    count(passed.size() > 1 && !known && pair.known.contains(milestoneOf(best, passed.front())),
          "only a lower threshold is known");
    if (before.best) {
        takeNewBest(pair, before);
    }
}

void PairCensus::takeNewBest(const SnapshotPair& pair, const RoostSnapshot& before)
{
    const BestPost& best = *pair.now.best;
    const auto passed = crossed(before, best);
    const bool known = !passed.empty() && pair.known.contains(milestoneOf(best, passed.back()));
    const bool same = before.best->key() == best.key();
    const bool better = before.best->views < best.views;
    const bool bestKnown = pair.known.contains("p|best:" + best.key());
    count(isAmong(thresholds, before.best->views) && before.best->views == best.views,
          "a threshold reached before");
    count(same && better, "the same best post with more views");
    count(!same && before.best->views == best.views, "another best post with as many views");
    count(!same && before.best->views > best.views, "another best post with fewer views");
    count(!same && better && passed.empty() && !bestKnown, "a new best post");
    count(!same && better && passed.empty() && bestKnown, "a new best post that is known");
    count(!same && better && !passed.empty() && !known, "a new best post beside a milestone");
    count(!same && better && known && !bestKnown, "a new best post beside a known milestone");
    count(!same && before.best->text == best.text && before.best->platform == best.platform,
          "best posts that only the address tells apart");
}

void PairCensus::takeQueue(const SnapshotPair& pair, const RoostSnapshot& before)
{
    using std::chrono::hours;
    using std::chrono::milliseconds;
    const auto gone = vanished(pair, before);
    const auto gonePosts = std::ssize(gone);
    const std::int64_t rise = pair.now.posts.failed - before.posts.failed;
    const auto split = static_cast<std::size_t>(std::clamp<std::int64_t>(rise, 0, gonePosts));
    const Date now = pair.now.generatedAt;
    const auto age = [&](const Next& post) { return now - post.at; };
    const auto leftEarly = [&](const Next& post) {
        return post.at == now + milliseconds{1} &&
               std::ranges::find(pair.now.posts.next, post.id, &Next::id) == pair.now.posts.next.end();
    };
    count(std::ranges::any_of(before.posts.next, leftEarly), "a post gone just before it was due");
    count(std::ranges::count(gone, milliseconds{0}, age) > 0, "a post gone at the time it was due");
    count(std::ranges::count(gone, hours{3}, age) > 0, "a post due exactly three hours ago");
    count(std::ranges::count(gone, hours{3} + milliseconds{1}, age) > 0,
          "a post due just more than three hours ago");
    count(std::ranges::adjacent_find(gone, {}, &Next::at) != gone.end(), "posts due at one time");
    count(split > 0 && split < gone.size() && gone[split - 1].at == gone[split].at,
          "posts due at one time of which one failed");
    count(std::ranges::adjacent_find(gone,
                                     [](const Next& first, const Next& second) {
                                         return first.at == second.at && first.id > second.id;
                                     }) != gone.end(),
          "posts due at one time and not in the order of their names");
    count(rise < 0 && gonePosts > 0, "the failures fell");
    count(rise == 0 && gonePosts > 0, "the failures stayed");
    count(rise > 0 && rise < gonePosts, "fewer failures than posts");
    count(rise > 0 && rise == gonePosts, "as many failures as posts");
    count(rise > gonePosts && gonePosts > 0, "more failures than posts");
    count(rise > 0 && gonePosts == 0, "failures without posts");
    for (std::size_t place = 0; place < gone.size(); ++place) {
        const std::string key = (place < split ? "p|failed:" : "p|sent:") + gone[place].id;
        const bool fresh = age(gone[place]) <= hours{3};
        count(place < split && fresh && pair.known.contains(key), "a failed post that is known");
        count(place >= split && fresh && pair.known.contains(key), "a sent post that is known");
        count(place < split && !fresh, "a failed post that was due too long ago");
        count(place >= split && !fresh, "a sent post that was due too long ago");
    }
    std::set<std::string> ids;
    count(std::ranges::any_of(gone, [&](const Next& post) { return !ids.insert(post.id).second; }),
          "a post gone twice");
    count(std::ranges::any_of(pair.known, [](const auto& key) { return key.starts_with("p|failed-count:"); }),
          "failures without posts that are known");
}

void PairCensus::takeFollowers(const SnapshotPair& pair, const RoostSnapshot& before)
{
    const auto& now = pair.now.followers;
    count(before.followers && !now, "followers that are not counted any more");
    count(!before.followers && now, "followers counted for the first time");
    if (!before.followers || !now) {
        return;
    }
    const bool known = pair.known.contains("p|followers:" + std::to_string(now->total));
    count(now->total > before.followers->total && !known, "more followers");
    count(now->total > before.followers->total && known, "more followers, which is known");
    count(now->total == before.followers->total, "as many followers");
    count(now->total < before.followers->total, "fewer followers");
}

void PairCensus::take(const SnapshotPair& pair)
{
    count(!pair.before && pair.now.best, "no snapshot before, a best post");
    count(!pair.before && !pair.now.best, "no snapshot before, no best post");
    if (pair.before) {
        takeBest(pair, *pair.before);
        takeQueue(pair, *pair.before);
        takeFollowers(pair, *pair.before);
    }
}

} // namespace roost::test
