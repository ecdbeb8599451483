#pragma once

#include "model/RoostSnapshot.h"
#include "programs/roost-service/FollowerCounter.h"
#include "programs/roost-service/LifePace.h"
#include "programs/roost-service/PostCalendar.h"
#include "programs/roost-service/ProfileTexts.h"
#include "programs/roost-service/ViewCounter.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace roost::local {

/// One believable profile whose numbers live: views grow, posts go out and some fail, another post becomes
/// the best one, followers come, one network stops reporting for a while. A function of seed, position, pace
/// and time alone; holds no other state. Any thread.
///
/// What each snapshot keeps to: `views.total` is the sum of the last seven days of the series, of the
/// networks' views too, and `views.previous` that of the seven days before; a network that fails keeps its
/// numbers of the moment at which it failed; the planned posts stand in the order in which they go out, all
/// after `generatedAt`; `followers.total` is the sum of the networks and the last entry of the series; the
/// best post has fewer views than its network.
class LivingProfile {
public:
    /// The profile at `position`, counted from 0. The first is large and reports everything, the second is of
    /// middle size, the third small, without followers and with few posts; the others vary. `serviceBase` is
    /// the origin that its links lead to, without a slash at the end.
    LivingProfile(std::uint64_t seed, std::size_t position, LifePace pace, std::string serviceBase);

    const std::string& id() const { return identity_.id; }
    const std::string& name() const { return identity_.name; }

    RoostSnapshot snapshot(Date now) const;

private:
    struct NetworkLife {
        std::string platform;
        /// Views on a usual day.
        std::int64_t perDay = 0;
        /// Absent where the network tells no views.
        std::optional<ViewCounter> views;
        std::optional<FollowerCounter> followers;
        bool breaksDown = false;
    };

    std::optional<Date> downSince(const NetworkLife& network, Date now) const;
    std::int64_t viewsOfDay(const NetworkLife& network, std::chrono::sys_days day, Date now) const;
    std::int64_t viewsOf(const PostSlot& slot, Date now) const;
    void addViews(RoostSnapshot& snapshot, Date now) const;
    void addPosts(RoostSnapshot& snapshot, Date now) const;
    void addFollowers(RoostSnapshot& snapshot, Date now) const;

    std::uint64_t seed_;
    LifePace pace_;
    std::string serviceBase_;
    ProfileIdentity identity_;
    RoostSnapshot::Views::Basis basis_;
    bool hasFollowers_;
    std::vector<NetworkLife> networks_;
    PostCalendar calendar_;
};

} // namespace roost::local
