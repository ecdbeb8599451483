#pragma once

#include "model/RoostSnapshot.h"

#include <cstdint>
#include <optional>
#include <variant>

namespace roost {

/// Something that happened to a profile between two refreshes and that its owner may want to hear of.
namespace RoostEvent {

/// The best post of the week passed a number of views.
struct Milestone {
    std::int64_t threshold = 0;
    RoostSnapshot::BestPost best;
    bool operator==(const Milestone&) const = default;
};

/// Another post became the best of the week.
struct NewBest {
    RoostSnapshot::BestPost best;
    /// The views of the post that was best before.
    std::int64_t previousViews = 0;
    bool operator==(const NewBest&) const = default;
};

/// A post left the queue and was published.
struct PostWentOut {
    RoostSnapshot::Posts::Next post;
    bool operator==(const PostWentOut&) const = default;
};

/// A post failed.
struct PostFailed {
    /// Absent when more posts failed than left the queue, so that nobody knows which.
    std::optional<RoostSnapshot::Posts::Next> post;
    bool operator==(const PostFailed&) const = default;
};

struct NewFollowers {
    std::int64_t gained = 0;
    std::int64_t total = 0;
    bool operator==(const NewFollowers&) const = default;
};

using Any = std::variant<Milestone, NewBest, PostWentOut, PostFailed, NewFollowers>;

} // namespace RoostEvent

} // namespace roost
