#pragma once

#include "programs/roost-service/LifePace.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace roost::local {

/// A post's place in the calendar of its profile. Numbers rise by one from post to post.
struct PostSlot {
    std::int64_t number = 0;
    /// When the post goes out, by the clock.
    Date at;

    bool operator==(const PostSlot&) const = default;
};

/// What is posted in one slot.
struct CalendarPost {
    std::string id;
    std::string text;
    /// Platform identifiers, at least one; the first is where the post is seen most.
    std::vector<std::string> networks;
    /// Whether the service will fail to publish it.
    bool fails = false;
};

/// The posts of one profile, past and planned, as a function of time alone. A plain value; any thread.
class PostCalendar {
public:
    /// A post every `interval` of the profile's life, give or take. `platforms` must not be empty.
    PostCalendar(std::uint64_t seed, std::string idPrefix, std::chrono::hours interval,
                 std::vector<std::string> platforms, LifePace pace);

    /// The slots after `after` up to and including `upTo`, earliest first.
    std::vector<PostSlot> slotsBetween(Date after, Date upTo) const;

    CalendarPost post(const PostSlot& slot) const;

    /// The views of a published post at `now`, on its first network; rises with time and levels off.
    /// `typical` is what a usual day brings there; no post ever passes twice that.
    std::int64_t views(const PostSlot& slot, std::int64_t typical, Date now) const;

private:
    Date livedAt(std::int64_t number) const;

    std::uint64_t seed_;
    std::string idPrefix_;
    std::chrono::milliseconds interval_;
    std::vector<std::string> platforms_;
    LifePace pace_;
};

} // namespace roost::local
