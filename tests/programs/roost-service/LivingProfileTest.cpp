#include "programs/roost-service/LivingProfile.h"

#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <set>

namespace roost::local {
namespace {

using namespace std::chrono_literals;
using std::chrono::days;
using Reporting = RoostSnapshot::Network::Reporting;

constexpr Date start{std::chrono::sys_days{std::chrono::year{2025} / 3 / 14} + 8h + 123ms};
const std::string base = "http://127.0.0.1:8080";

LivingProfile profileAt(std::size_t position, std::int64_t scale = 1, std::uint64_t seed = 1)
{
    return {seed, position, {start, scale}, base};
}

std::int64_t sumOf(const std::vector<RoostSnapshot::Views::Day>& series, std::size_t from, std::size_t count)
{
    return std::accumulate(
        series.begin() + static_cast<std::ptrdiff_t>(from),
        series.begin() + static_cast<std::ptrdiff_t>(from + count), std::int64_t{0},
        [](std::int64_t sum, const RoostSnapshot::Views::Day& day) { return sum + day.views; });
}

void expectLawful(const RoostSnapshot& snapshot, Date now)
{
    EXPECT_EQ(snapshot.generatedAt, now);
    EXPECT_LE(snapshot.sampledAt, now);

    const auto& series = snapshot.views.series;
    ASSERT_EQ(series.size(), 14U);
    for (std::size_t i = 0; i < series.size(); ++i) {
        EXPECT_EQ(series[i].day, dayString(now - days(13 - i)));
    }
    EXPECT_EQ(snapshot.views.total, sumOf(series, 7, 7));
    EXPECT_EQ(snapshot.views.previous, sumOf(series, 0, 7));
    std::int64_t ofNetworks = 0;
    for (const RoostSnapshot::Network& network : snapshot.networks) {
        EXPECT_FALSE(network.label.empty());
        EXPECT_EQ(network.views.has_value(), network.reporting != Reporting::unsupported);
        ofNetworks += network.views.value_or(0);
    }
    EXPECT_EQ(snapshot.views.total, ofNetworks);

    const RoostSnapshot::Posts& posts = snapshot.posts;
    EXPECT_GE(posts.scheduled, static_cast<std::int64_t>(posts.next.size()));
    EXPECT_TRUE(std::ranges::is_sorted(posts.next, {}, &RoostSnapshot::Posts::Next::at));
    std::set<std::string> ids;
    for (const RoostSnapshot::Posts::Next& post : posts.next) {
        EXPECT_GT(post.at, now);
        EXPECT_FALSE(post.networks.empty());
        EXPECT_TRUE(ids.insert(post.id).second);
    }

    if (snapshot.best) {
        const auto network =
            std::ranges::find(snapshot.networks, snapshot.best->platform, &RoostSnapshot::Network::platform);
        ASSERT_NE(network, snapshot.networks.end());
        EXPECT_EQ(network->label, snapshot.best->label);
        EXPECT_LE(snapshot.best->views, network->views);
    }
    if (snapshot.followers) {
        const RoostSnapshot::Followers& followers = *snapshot.followers;
        ASSERT_EQ(followers.series.size(), 15U);
        EXPECT_EQ(followers.series.back().day, dayString(now));
        EXPECT_EQ(followers.series.back().total, followers.total);
        EXPECT_TRUE(std::ranges::is_sorted(followers.series, {}, &RoostSnapshot::Followers::Day::total));
        std::int64_t counts = 0;
        for (const auto& network : followers.networks) {
            counts += network.count;
            EXPECT_GE(network.delta7, 0);
        }
        EXPECT_EQ(followers.total, counts);
    }
}

TEST(LivingProfile, KeepsItsLawsAtAnyTimeSeedAndPace)
{
    for (const std::int64_t scale : {1, 60, 3600}) {
        for (std::size_t position = 0; position < 12; ++position) {
            const LivingProfile profile = profileAt(position, scale, 40 + position);
            for (int step = -8; step < 12; ++step) {
                const Date now = start + step * 127min + step * 1234ms;
                expectLawful(profile.snapshot(now), now);
            }
        }
    }
}

TEST(LivingProfile, IsTheSameForTheSameSeedAndTime)
{
    EXPECT_EQ(profileAt(0).snapshot(start), profileAt(0).snapshot(start));
    EXPECT_NE(profileAt(0, 1, 1).snapshot(start).views, profileAt(0, 1, 2).snapshot(start).views);
    EXPECT_NE(profileAt(0).id(), profileAt(1).id());
}

TEST(LivingProfile, SurvivesItsWayThroughJSON)
{
    for (std::size_t position = 0; position < 8; ++position) {
        const RoostSnapshot snapshot = profileAt(position).snapshot(start);
        const auto decoded =
            RoostJSON::decoder().decode<RoostSnapshot>(RoostJSON::encoder().encode(snapshot));
        ASSERT_TRUE(decoded) << decoded.error().text();
        EXPECT_EQ(*decoded, snapshot);
    }
}

TEST(LivingProfile, GainsViewsDuringTheDay)
{
    const LivingProfile profile = profileAt(0);
    std::int64_t before = 0;
    for (auto passed = 0min; passed < 15h; passed += 5min) {
        const std::int64_t total = *profile.snapshot(start + passed).views.total;
        EXPECT_GE(total, before);
        before = total;
    }
    EXPECT_GT(before, profile.snapshot(start).views.total);
}

TEST(LivingProfile, LivesFasterWithALargerScaleWithoutLeavingTheClock)
{
    const auto gained = [](std::int64_t scale) {
        const LivingProfile profile = profileAt(0, scale);
        return *profile.snapshot(start + 3min).views.total - *profile.snapshot(start).views.total;
    };
    EXPECT_GT(gained(60), 20 * gained(1));
    EXPECT_EQ(profileAt(0, 60).snapshot(start + 3min).generatedAt, start + 3min);
}

TEST(LivingProfile, PublishesWhatItPlanned)
{
    const LivingProfile profile = profileAt(0);
    const RoostSnapshot before = profile.snapshot(start);
    ASSERT_FALSE(before.posts.next.empty());
    const RoostSnapshot::Posts::Next& first = before.posts.next.front();

    const RoostSnapshot justBefore = profile.snapshot(first.at - 1ms);
    const RoostSnapshot after = profile.snapshot(first.at);
    EXPECT_EQ(justBefore.posts.next.front(), first);
    EXPECT_NE(after.posts.next.front().id, first.id);
    EXPECT_EQ(after.posts.next.front().id, justBefore.posts.next[1].id);
    EXPECT_EQ(after.posts.published7 + after.posts.failed,
              justBefore.posts.published7 + justBefore.posts.failed + 1);
}

TEST(LivingProfile, HasAnotherBestPostFromTimeToTime)
{
    const LivingProfile profile = profileAt(0);
    std::set<std::string> keys;
    for (auto passed = 0h; passed < 24h * 14; passed += 3h) {
        const RoostSnapshot snapshot = profile.snapshot(start + passed);
        ASSERT_TRUE(snapshot.best);
        keys.insert(snapshot.best->key());
    }
    EXPECT_GT(keys.size(), 2U);
}

TEST(LivingProfile, LetsOneNetworkFailForAWhileAndKeepsItsNumbers)
{
    const LivingProfile profile = profileAt(0);
    std::set<std::string> failing;
    int failures = 0;
    int steps = 0;
    std::optional<RoostSnapshot::Network> failed;
    for (auto passed = 0min; passed < 14h; passed += 1min, ++steps) {
        for (const RoostSnapshot::Network& network : profile.snapshot(start + passed).networks) {
            if (network.reporting != Reporting::failed) {
                if (failed && network.platform == failed->platform) {
                    failed.reset();
                }
                continue;
            }
            ++failures;
            failing.insert(network.platform);
            EXPECT_EQ(failed.value_or(network).views, network.views);
            failed = network;
        }
    }
    EXPECT_EQ(failing.size(), 1U);
    EXPECT_GT(failures, 60);
    EXPECT_LT(failures, steps / 2);
}

TEST(LivingProfile, ComesInSeveralShapes)
{
    const RoostSnapshot large = profileAt(0).snapshot(start);
    EXPECT_TRUE(std::ranges::any_of(large.networks, [](const RoostSnapshot::Network& network) {
        return network.reporting == Reporting::unsupported;
    }));
    EXPECT_TRUE(large.followers);
    EXPECT_EQ(large.views.basis, RoostSnapshot::Views::Basis::growth);
    EXPECT_EQ(profileAt(1).snapshot(start).views.basis, RoostSnapshot::Views::Basis::published);
    const RoostSnapshot small = profileAt(2).snapshot(start);
    EXPECT_FALSE(small.followers);
    EXPECT_LT(small.views.total, 5000);
}

TEST(LivingProfile, NamesTenThousandProfilesApart)
{
    std::set<std::string> ids;
    for (std::size_t position = 0; position < 10'000; ++position) {
        ids.insert(profileIdentity(position).id);
    }
    EXPECT_EQ(ids.size(), 10'000U);
}

TEST(LivingProfile, LinksIntoTheServiceItBelongsTo)
{
    const RoostSnapshot snapshot = profileAt(0).snapshot(start);
    ASSERT_TRUE(snapshot.roostUrl);
    EXPECT_EQ(snapshot.roostUrl->text(), base + "/roost/overview");
    ASSERT_TRUE(snapshot.profile.avatarUrl);
    EXPECT_EQ(snapshot.profile.avatarUrl->text(), base + "/roost/avatars/harbour-light.svg");
}

} // namespace
} // namespace roost::local
