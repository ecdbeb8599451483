#include "tests/app/AppSimulationNumbers.h"

#include <algorithm>

namespace roost::test {

namespace {

using namespace std::chrono_literals;

void liveOn(RoostSnapshot::Posts& posts, Dice& dice, Date now)
{
    const auto due = std::ranges::count_if(posts.next, [now](const auto& post) { return post.at <= now; });
    posts.published7 += due;
    posts.failed += static_cast<std::int64_t>(due > 0 && dice.isOneIn(3) ? 1 : 0);
    posts.failed += static_cast<std::int64_t>(dice.isOneIn(200) ? 1 : 0);
    std::erase_if(posts.next, [now](const auto& post) { return post.at <= now; });
    if (posts.next.size() < 3 && dice.isOneIn(4)) {
        const Date at = now + dice.between(1min, 4h);
        posts.next.push_back({"post-" + std::to_string(at.time_since_epoch().count()), at, "a post", {}});
    }
    posts.scheduled = static_cast<std::int64_t>(posts.next.size());
}

} // namespace

void liveOn(RoostSnapshot& numbers, Dice& dice, Date now)
{
    numbers.generatedAt = now;
    // Tells which answer this was.
    numbers.views.total = *numbers.views.total + 1;
    liveOn(numbers.posts, dice, now);
    numbers.best->views += static_cast<std::int64_t>(dice.below(400));
    if (dice.isOneIn(30)) {
        // Up to the next three posts ahead, or back to the one before.
        const std::int64_t views = numbers.best->views;
        numbers.best->text = "post " + std::to_string(views % 7);
        numbers.best->views = dice.isOneIn(2) ? views + 1 : views / 3;
    }
    if (dice.isOneIn(6)) {
        numbers.followers->total += static_cast<std::int64_t>(dice.below(7)) - 2;
    }
}

} // namespace roost::test
