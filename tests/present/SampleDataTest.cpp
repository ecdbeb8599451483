#include "present/SampleData.h"

#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "present/FollowerGains.h"
#include "present/RoostDelta.h"
#include "present/SeriesScale.h"

#include <gmock/gmock.h>

#include <QChar>
#include <QString>

#include <limits>
#include <set>

namespace roost {
namespace {

using Reporting = RoostSnapshot::Network::Reporting;

const Date noon = RoostJSON::parseDate("2025-03-01T12:34:56.789Z").value();

TEST(MinimalSample, HasTheShapeThatPreviewsCountOn)
{
    const RoostSnapshot sample = SampleData::minimal(noon);
    EXPECT_EQ(sample.version, 1);
    EXPECT_EQ(sample.generatedAt, noon);
    EXPECT_EQ(sample.profile, (RoostSnapshot::Profile{"sample", "Brisken Roost", std::nullopt}));
    EXPECT_EQ(sample.views.days, 7);
    EXPECT_EQ(sample.views.total, 4'800);
    EXPECT_EQ(sample.views.previous, 3'900);
    EXPECT_EQ(sample.views.basis, RoostSnapshot::Views::Basis::growth);
    ASSERT_EQ(sample.views.series.size(), 14U);
    for (std::int64_t i = 0; i < 14; ++i) {
        const RoostSnapshot::Views::Day wanted{dayString(noon - std::chrono::days{13 - i}), 100 + 40 * i};
        EXPECT_EQ(sample.views.series.at(static_cast<std::size_t>(i)), wanted);
    }
    EXPECT_FALSE(sample.networks.empty());
    EXPECT_NE(sample.posts, RoostSnapshot::Posts{});
    EXPECT_EQ(sample.best, std::nullopt);
    EXPECT_EQ(sample.followers, std::nullopt);
    EXPECT_EQ(sample.sampledAt, std::nullopt);
    EXPECT_EQ(sample.roostUrl, std::nullopt);
}

TEST(Samples, AreMadeAsIfTheyHadJustCome)
{
    for (const auto& [name, make] : SampleData::all) {
        const RoostSnapshot sample = make(noon);
        EXPECT_EQ(sample.generatedAt, noon) << name;
        EXPECT_EQ(sample, sample.rebased(noon)) << name;
        EXPECT_EQ(make(noon + std::chrono::hours{30}), sample.rebased(noon + std::chrono::hours{30})) << name;
    }
}

TEST(Samples, AreSnapshotsThatTheServiceCouldSend)
{
    std::set<std::string> ids;
    for (const auto& [name, make] : SampleData::all) {
        const RoostSnapshot sample = make(noon);
        ids.insert(sample.profile.id);
        const auto decoded = RoostJSON::decoder().decode<RoostSnapshot>(RoostJSON::encoder().encode(sample));
        EXPECT_EQ(decoded, sample) << name;
    }
    EXPECT_EQ(ids.size(), SampleData::all.size());
}

TEST(Samples, CanBeComputedWith)
{
    for (const auto& [name, make] : SampleData::all) {
        const RoostSnapshot sample = make(noon);
        EXPECT_FALSE(SeriesScale::bars(sample.views.series, sample.views.days).empty()) << name;
        EXPECT_EQ(RoostDelta::of(sample.views).has_value(), sample.views.total.has_value()) << name;
        if (sample.followers) {
            EXPECT_EQ(RoostDelta::of(*sample.followers).has_value(), name != "sparse") << name;
            EXPECT_EQ(followerGains(sample.followers->series).size() + 1, sample.followers->series.size())
                << name;
        }
    }
}

/// What the last week of a series adds up to.
std::int64_t lastWeek(const std::vector<RoostSnapshot::Views::Day>& series)
{
    std::int64_t sum = 0;
    for (const RoostBar& bar : SeriesScale::bars(series, 7)) {
        sum += bar.value;
    }
    return sum;
}

/// What the parts of a snapshot say about one thing, as far as they say it.
void expectOneStory(std::string_view name, const RoostSnapshot& sample)
{
    std::int64_t views = 0;
    std::int64_t posts = 0;
    for (const auto& network : sample.networks) {
        views += network.views.value_or(0);
        posts += network.posts;
    }
    EXPECT_EQ(views, sample.views.total.value_or(0)) << name;
    EXPECT_EQ(posts, sample.posts.published7) << name;
    EXPECT_EQ(std::ssize(sample.posts.next), sample.posts.scheduled) << name;
    EXPECT_TRUE(std::ranges::is_sorted(sample.posts.next, {}, &RoostSnapshot::Posts::Next::at)) << name;
    if (name != "minimal") { // whose numbers are given
        EXPECT_EQ(lastWeek(sample.views.series), sample.views.total.value_or(0)) << name;
    }
    if (sample.best) {
        const auto home =
            std::ranges::find(sample.networks, sample.best->platform, &RoostSnapshot::Network::platform);
        ASSERT_NE(home, sample.networks.end()) << name;
        EXPECT_EQ(home->label, sample.best->label) << name;
        EXPECT_LE(sample.best->views, home->views.value_or(0)) << name;
    }
    if (sample.followers) {
        std::int64_t followers = 0;
        for (const auto& network : sample.followers->networks) {
            followers += network.count;
        }
        EXPECT_EQ(followers, sample.followers->total) << name;
        EXPECT_EQ(sample.followers->series.back().total, sample.followers->total) << name;
    }
}

TEST(Samples, TellOneStory)
{
    for (const auto& [name, make] : SampleData::all) {
        if (name != "overflowing") { // whose numbers nobody can add up
            expectOneStory(name, make(noon));
        }
    }
}

TEST(Samples, NameNetworksOfTheirOwnInTheQueue)
{
    for (const auto& [name, make] : SampleData::all) {
        const RoostSnapshot sample = make(noon);
        std::set<std::string> platforms;
        for (const auto& network : sample.networks) {
            EXPECT_TRUE(platforms.insert(network.platform).second) << name << " " << network.platform;
        }
        std::set<std::string> ids;
        for (const auto& post : sample.posts.next) {
            EXPECT_TRUE(ids.insert(post.id).second) << name << " " << post.id;
            for (const std::string& platform : post.networks) {
                EXPECT_TRUE(platforms.contains(platform)) << name << " " << platform;
            }
        }
    }
}

TEST(RichSample, SaysTheSameOfItsWeekBefore)
{
    RoostSnapshot rich = SampleData::rich(noon);
    ASSERT_EQ(rich.views.series.size(), 14U);
    rich.views.series.resize(7);
    EXPECT_EQ(lastWeek(rich.views.series), rich.views.previous);
    ASSERT_EQ(rich.followers->series.size(), 8U);
    const std::int64_t gained = rich.followers->total - rich.followers->series.front().total;
    std::int64_t told = 0;
    for (const auto& network : rich.followers->networks) {
        told += network.delta7.value_or(0);
    }
    EXPECT_EQ(told, gained);
}

TEST(RichSample, HoldsEverythingThatASnapshotCanHold)
{
    const RoostSnapshot rich = SampleData::rich(noon);
    EXPECT_TRUE(rich.profile.avatarUrl && rich.best && rich.best->url && rich.followers && rich.roostUrl);
    EXPECT_EQ(rich.sampledAt, noon - std::chrono::minutes{1});
    EXPECT_TRUE(std::ranges::is_sorted(rich.posts.next, {}, &RoostSnapshot::Posts::Next::at));
}

TEST(SparseSample, HasNoNumbersYet)
{
    const RoostSnapshot sparse = SampleData::sparse(noon);
    EXPECT_FALSE(sparse.hasNumbers());
    EXPECT_TRUE(sparse.posts.next.empty());
}

TEST(FailingSample, HasEveryWayOfNotReporting)
{
    std::set<Reporting> seen;
    for (const auto& network : SampleData::failingNetworks(noon).networks) {
        seen.insert(network.reporting);
    }
    EXPECT_EQ(seen, (std::set{Reporting::ok, Reporting::failed, Reporting::unsupported, Reporting::unknown}));
    EXPECT_GT(SampleData::failingNetworks(noon).posts.failed, 0);
}

TEST(OverflowingSample, IsLongerThanAnyViewHasRoomFor)
{
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    const RoostSnapshot sample = SampleData::overflowing(noon);
    EXPECT_GT(sample.profile.name.size(), 200U);
    EXPECT_EQ(sample.views.total, most);
    EXPECT_EQ(sample.posts.failed, most);
    EXPECT_EQ(sample.followers->total, most);
    EXPECT_GT(sample.networks.size(), 20U);
    EXPECT_GT(sample.posts.next.size(), 50U);
    EXPECT_GT(sample.best->text.size(), 1'000U);
    EXPECT_EQ(SeriesScale::bars(sample.views.series, sample.views.days).size(), 14U);
}

TEST(RightToLeftSample, HasTextsOfBothDirections)
{
    const RoostSnapshot sample = SampleData::rightToLeft(noon);
    const auto directions = [](const std::string& text) {
        std::set<QChar::Direction> found;
        for (const QChar character : QString::fromStdString(text)) {
            found.insert(character.direction());
        }
        return std::array{found.contains(QChar::DirR), found.contains(QChar::DirAL),
                          found.contains(QChar::DirL)};
    };
    EXPECT_THAT(directions(sample.profile.name), testing::ElementsAre(true, false, false));
    EXPECT_THAT(directions(sample.posts.next.at(1).text), testing::ElementsAre(false, true, true));
    EXPECT_THAT(directions(sample.networks.at(3).label), testing::ElementsAre(true, false, true));
}

} // namespace
} // namespace roost
