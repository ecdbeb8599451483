#include "present/SampleData.h"

#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "present/RoostDelta.h"
#include "present/SeriesScale.h"

#include <gmock/gmock.h>

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
            EXPECT_EQ(SeriesScale::dailyGains(sample.followers->series).size() + 1,
                      sample.followers->series.size())
                << name;
        }
    }
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
}

} // namespace
} // namespace roost
