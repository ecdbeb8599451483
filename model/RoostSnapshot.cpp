#include "model/RoostSnapshot.h"

#include <algorithm>

namespace roost {

namespace {

/// Renames the days of `series` so that the last is the day of `now` and each earlier one the day before the
/// next.
template <class Day>
void endOn(std::vector<Day>& series, Date now)
{
    Date day = now;
    for (auto entry = series.rbegin(); entry != series.rend(); ++entry) {
        entry->day = dayString(day);
        day -= std::chrono::days{1};
    }
}

} // namespace

std::string RoostSnapshot::BestPost::key() const { return url ? url->text() : platform + "|" + text; }

bool RoostSnapshot::hasNumbers() const
{
    return views.total.has_value() || std::ranges::any_of(networks, [](const Network& network) {
               return network.views && network.reporting != Network::Reporting::unsupported;
           });
}

RoostSnapshot RoostSnapshot::rebased(Date now) const
{
    RoostSnapshot moved = *this;
    const auto shift = now - generatedAt;
    moved.generatedAt = now;
    for (Posts::Next& next : moved.posts.next) {
        next.at += shift;
    }
    endOn(moved.views.series, now);
    if (moved.followers) {
        endOn(moved.followers->series, now);
    }
    if (moved.sampledAt) {
        moved.sampledAt = now - std::chrono::seconds{60};
    }
    return moved;
}

} // namespace roost
