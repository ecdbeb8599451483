#include "programs/roost-service/LivingProfile.h"

#include "programs/roost-service/ProfileShape.h"
#include "programs/roost-service/SeededHash.h"

#include <algorithm>

namespace roost::local {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::sys_days;

using Reporting = RoostSnapshot::Network::Reporting;

enum Purpose : std::uint64_t { ofProfile = 0x501, ofNetwork, ofWeight, ofBreakdown, ofLink };

constexpr int daysCounted = 7;
constexpr int daysOfFollowers = 15;
constexpr std::size_t mostPlannedShown = 6;
constexpr auto planningAhead = days(10);

std::vector<std::string> allPlatforms(const ProfileShape& shape)
{
    std::vector<std::string> all = shape.reporting;
    all.insert(all.end(), shape.silent.begin(), shape.silent.end());
    return all;
}

} // namespace

LivingProfile::LivingProfile(std::uint64_t seed, std::size_t position, LifePace pace, std::string serviceBase)
    : seed_(seededHash(seed, ofProfile, static_cast<std::int64_t>(position))),
      pace_(pace),
      serviceBase_(std::move(serviceBase)),
      identity_(profileIdentity(position)),
      calendar_(seed_, identity_.id, profileShape(seed_, position).postInterval,
                profileShape(seed_, position).reporting, pace)
{
    const ProfileShape shape = profileShape(seed_, position);
    basis_ = shape.basis;
    hasFollowers_ = shape.hasFollowers;

    std::int64_t weights = 0;
    const auto weight = [this](std::size_t i) {
        return seededNumber(seed_, ofWeight, static_cast<std::int64_t>(i), 12, 40);
    };
    for (std::size_t i = 0; i < shape.reporting.size(); ++i) {
        weights += weight(i);
    }
    for (const std::string& platform : allPlatforms(shape)) {
        const std::size_t i = networks_.size();
        const std::uint64_t networkSeed = seededHash(seed_, ofNetwork, static_cast<std::int64_t>(i));
        NetworkLife life;
        life.platform = platform;
        life.perDay = shape.viewsPerDay * weight(i) / weights;
        if (i < shape.reporting.size()) {
            life.views.emplace(networkSeed, life.perDay);
        }
        if (hasFollowers_) {
            life.followers.emplace(networkSeed, shape.viewsPerDay * weight(i) / 20 + 40, pace.start);
        }
        life.breaksDown = i == 1 && shape.reporting.size() > 2;
        networks_.push_back(std::move(life));
    }
}

RoostSnapshot LivingProfile::snapshot(Date now) const
{
    RoostSnapshot snapshot;
    snapshot.generatedAt = now;
    snapshot.profile = {identity_.id, identity_.name,
                        WebURL::parse(serviceBase_ + "/roost/avatars/" + identity_.id + ".svg")};
    snapshot.sampledAt = floor<minutes>(now);
    snapshot.roostUrl = WebURL::parse(serviceBase_ + "/roost/overview");
    addViews(snapshot, now);
    addPosts(snapshot, now);
    if (hasFollowers_) {
        addFollowers(snapshot, now);
    }
    return snapshot;
}

/// In the profile's life, the moment since which `network` does not answer; nothing while it does.
std::optional<Date> LivingProfile::downSince(const NetworkLife& network, Date now) const
{
    if (!network.breaksDown) {
        return std::nullopt;
    }
    constexpr auto cycle = hours(6);
    const Date life = pace_.lived(now);
    const auto round = life.time_since_epoch() / cycle;
    const Date from = Date(cycle * round) + minutes(seededNumber(seed_, ofBreakdown, round, 60, 240));
    return life >= from && life < from + minutes(80) ? std::optional(from) : std::nullopt;
}

std::int64_t LivingProfile::viewsOfDay(const NetworkLife& network, sys_days day, Date now) const
{
    if (!network.views) {
        return 0;
    }
    const Date until = std::min(pace_.lived(std::min(Date(day + days(1)), now)),
                                downSince(network, now).value_or(Date::max()));
    return network.views->between(pace_.lived(day), until);
}

void LivingProfile::addViews(RoostSnapshot& snapshot, Date now) const
{
    const sys_days today = floor<days>(now);
    std::vector<std::int64_t> ofNetwork(networks_.size());
    std::int64_t total = 0;
    std::int64_t previous = 0;
    for (int back = 2 * daysCounted - 1; back >= 0; --back) {
        const sys_days day = today - days(back);
        std::int64_t ofDay = 0;
        for (std::size_t i = 0; i < networks_.size(); ++i) {
            const std::int64_t views = viewsOfDay(networks_[i], day, now);
            ofDay += views;
            ofNetwork[i] += back < daysCounted ? views : 0;
        }
        (back < daysCounted ? total : previous) += ofDay;
        snapshot.views.series.push_back({dayString(day), ofDay});
    }
    snapshot.views.days = daysCounted;
    snapshot.views.basis = basis_;
    snapshot.views.total = total;
    snapshot.views.previous = previous;

    for (std::size_t i = 0; i < networks_.size(); ++i) {
        const NetworkLife& life = networks_[i];
        RoostSnapshot::Network network;
        network.platform = life.platform;
        network.label = platformLabel(life.platform);
        network.username = "@" + identity_.handle;
        if (!life.views) {
            network.reporting = Reporting::unsupported;
        } else {
            network.views = ofNetwork[i];
            network.reporting = downSince(life, now) ? Reporting::failed : Reporting::ok;
        }
        snapshot.networks.push_back(std::move(network));
    }
}

std::int64_t LivingProfile::viewsOf(const PostSlot& slot, Date now) const
{
    const std::string platform = calendar_.post(slot).networks.front();
    const auto network = std::ranges::find(networks_, platform, &NetworkLife::platform);
    return calendar_.views(slot, network->perDay, now);
}

void LivingProfile::addPosts(RoostSnapshot& snapshot, Date now) const
{
    std::optional<PostSlot> best;
    for (const PostSlot& slot : calendar_.slotsBetween(now - days(daysCounted), now)) {
        const CalendarPost post = calendar_.post(slot);
        if (post.fails) {
            ++snapshot.posts.failed;
            continue;
        }
        ++snapshot.posts.published7;
        for (RoostSnapshot::Network& network : snapshot.networks) {
            network.posts += std::ranges::count(post.networks, network.platform);
        }
        if (!best || viewsOf(slot, now) > viewsOf(*best, now)) {
            best = slot;
        }
    }
    if (best) {
        const CalendarPost post = calendar_.post(*best);
        const std::string& platform = post.networks.front();
        snapshot.best = RoostSnapshot::BestPost{platform, std::string(platformLabel(platform)),
                                                viewsOf(*best, now), post.text, std::nullopt};
        // Some networks give no address for a post.
        if (seededNumber(seed_, ofLink, best->number, 0, 4) != 0) {
            snapshot.best->url = WebURL::parse(serviceBase_ + "/roost/overview?post=" + post.id);
        }
    }

    for (const PostSlot& slot : calendar_.slotsBetween(now, pace_.clock(pace_.lived(now) + planningAhead))) {
        ++snapshot.posts.scheduled;
        if (snapshot.posts.next.size() < mostPlannedShown) {
            CalendarPost post = calendar_.post(slot);
            snapshot.posts.next.push_back(
                {std::move(post.id), slot.at, std::move(post.text), std::move(post.networks)});
        }
    }
}

void LivingProfile::addFollowers(RoostSnapshot& snapshot, Date now) const
{
    RoostSnapshot::Followers followers;
    for (const NetworkLife& network : networks_) {
        const std::int64_t count = network.followers->count(pace_.lived(now));
        const std::int64_t weekAgo = network.followers->count(pace_.lived(now - days(daysCounted)));
        followers.total += count;
        followers.networks.push_back(
            {network.platform, "@" + identity_.handle, count, std::optional(count - weekAgo)});
    }
    const sys_days today = floor<days>(now);
    for (int back = daysOfFollowers - 1; back >= 0; --back) {
        const Date until = std::min(Date(today - days(back - 1)), now);
        std::int64_t ofDay = 0;
        for (const NetworkLife& network : networks_) {
            ofDay += network.followers->count(pace_.lived(until));
        }
        followers.series.push_back({dayString(today - days(back)), ofDay});
    }
    snapshot.followers = std::move(followers);
}

} // namespace roost::local
