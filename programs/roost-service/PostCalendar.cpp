#include "programs/roost-service/PostCalendar.h"

#include "programs/roost-service/ProfileTexts.h"
#include "programs/roost-service/SeededHash.h"

#include <algorithm>

namespace roost::local {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

enum Purpose : std::uint64_t {
    ofTime = 0x201,
    ofText,
    ofFirstNetwork,
    ofNetworkCount,
    ofFailure,
    ofReach,
    ofSpeed
};

} // namespace

PostCalendar::PostCalendar(std::uint64_t seed, std::string idPrefix, std::chrono::hours interval,
                           std::vector<std::string> platforms, LifePace pace)
    : seed_(seed),
      idPrefix_(std::move(idPrefix)),
      interval_(interval),
      platforms_(std::move(platforms)),
      pace_(pace)
{
}

Date PostCalendar::livedAt(std::int64_t number) const
{
    // Less than one interval late, so that the posts stay in the order of their numbers; people plan by the
    // minute.
    const std::int64_t late = seededNumber(seed_, ofTime, number, 0, interval_.count() * 6 / 10);
    return std::chrono::floor<std::chrono::minutes>(Date(interval_ * number + milliseconds(late)));
}

std::vector<PostSlot> PostCalendar::slotsBetween(Date after, Date upTo) const
{
    std::vector<PostSlot> slots;
    const auto first = pace_.lived(after).time_since_epoch() / interval_ - 1;
    for (std::int64_t number = first;; ++number) {
        const Date at = pace_.clock(livedAt(number));
        if (at > upTo) {
            return slots;
        }
        if (at > after) {
            slots.push_back({number, at});
        }
    }
}

CalendarPost PostCalendar::post(const PostSlot& slot) const
{
    const auto count = static_cast<std::int64_t>(platforms_.size());
    const std::int64_t first = seededNumber(seed_, ofFirstNetwork, slot.number, 0, count - 1);
    const std::int64_t shared = std::min(count, seededNumber(seed_, ofNetworkCount, slot.number, 1, 3));

    CalendarPost post;
    post.id = idPrefix_ + '-' + std::to_string(slot.number);
    post.text = postText(seededHash(seed_, ofText, slot.number));
    for (std::int64_t i = 0; i < shared; ++i) {
        post.networks.push_back(platforms_[static_cast<std::size_t>((first + i) % count)]);
    }
    post.fails = seededNumber(seed_, ofFailure, slot.number, 1, 13) == 1;
    return post;
}

std::int64_t PostCalendar::views(const PostSlot& slot, std::int64_t typical, Date now) const
{
    const std::int64_t reach = typical * seededNumber(seed_, ofReach, slot.number, 150, 2000) / 1000;
    const std::int64_t half =
        seconds(std::chrono::hours(seededNumber(seed_, ofSpeed, slot.number, 3, 12))).count();
    const std::int64_t age = std::chrono::floor<seconds>(pace_.lived(now) - pace_.lived(slot.at)).count();
    return age <= 0 ? 0 : reach * age / (age + half);
}

} // namespace roost::local
