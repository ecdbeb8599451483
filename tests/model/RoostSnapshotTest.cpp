#include "model/RoostSnapshot.h"

#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "tests/support/Fixture.h"
#include "tests/support/RandomSnapshot.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

using namespace std::chrono_literals;
using Reporting = RoostSnapshot::Network::Reporting;

Date at(std::string_view text) { return RoostJSON::parseDate(text).value(); }

RoostSnapshot decoded(const std::string& name)
{
    return RoostJSON::decoder().decode<RoostSnapshot>(test::fixture(name)).value();
}

TEST(HasNumbers, NeedsATotalOrANetworkWithViewsThatIsNotUnsupported)
{
    RoostSnapshot snapshot = decoded("snapshot-only-unsupported-views.json");
    EXPECT_FALSE(snapshot.hasNumbers());
    for (const Reporting reporting :
         {Reporting::ok, Reporting::empty, Reporting::failed, Reporting::unknown}) {
        snapshot.networks[0].reporting = reporting;
        EXPECT_TRUE(snapshot.hasNumbers());
    }
    snapshot.networks[0].views.reset();
    EXPECT_FALSE(snapshot.hasNumbers());
    snapshot.views.total = 0;
    EXPECT_TRUE(snapshot.hasNumbers());
}

TEST(HasNumbers, IsFalseForASnapshotWithoutAnything)
{
    EXPECT_FALSE(RoostSnapshot{}.hasNumbers());
    RoostSnapshot snapshot;
    snapshot.views.previous = 5;
    snapshot.views.series = {{"2025-01-01", 5}};
    snapshot.networks = {{"x", "X", {}, {}, 5, Reporting::ok}};
    EXPECT_FALSE(snapshot.hasNumbers());
    snapshot.networks.push_back({"y", "Y", {}, 0, 0, Reporting::ok});
    EXPECT_TRUE(snapshot.hasNumbers());
}

TEST(BestPostKey, IsTheAddressAsReceived)
{
    RoostSnapshot::BestPost best{"instagram", "Instagram", 5, "Hi",
                                 WebURL::parse("HTTPS://X.Example/%7ea?B=1")};
    EXPECT_EQ(best.key(), "HTTPS://X.Example/%7ea?B=1");
    best.url.reset();
    EXPECT_EQ(best.key(), "instagram|Hi");
    best.text.clear();
    EXPECT_EQ(best.key(), "instagram|");
}

TEST(BestPostKey, TakesPlatformAndTextOfAPostWhoseLinkWasDropped)
{
    const auto snapshot = RoostJSON::decoder().decode<RoostSnapshot>(
        R"({"generatedAt":"2025-01-02T03:04:05Z","profile":{"id":"p","name":"P"},"views":{},)"
        R"("best":{"platform":"x","label":"X","views":1,"text":"a|b","url":"ftp://h/"}})");
    EXPECT_EQ(snapshot.value().best.value().key(), "x|a|b");
}

TEST(Rebased, ReadsAsIfProducedNow)
{
    const RoostSnapshot snapshot = decoded("snapshot-full.json");
    const Date now = at("2026-01-01T00:00:30.250Z");
    RoostSnapshot expected = snapshot;
    expected.generatedAt = now;
    expected.sampledAt = at("2025-12-31T23:59:30.250Z");
    expected.views.series[0].day = "2025-12-30";
    expected.views.series[1].day = "2025-12-31";
    expected.views.series[2].day = "2026-01-01";
    expected.followers->series[0].day = "2025-12-31";
    expected.followers->series[1].day = "2026-01-01";
    // The posts stay 5 h 25 min 3.211 s and 19 h 55 min 3.461 s ahead.
    expected.posts.next[0].at = now + 19'503'211ms;
    expected.posts.next[1].at = now + 71'703'461ms;
    EXPECT_EQ(snapshot.rebased(now), expected);
}

TEST(Rebased, PutsSampledAtOneMinuteBeforeNowHoweverOldTheSampleWas)
{
    RoostSnapshot snapshot = decoded("snapshot-full.json");
    const Date now = at("2026-01-01T00:00:30.250Z");
    for (const char* sampled : {"2025-03-01T12:34:56.789Z", "1999-01-01T00:00:00Z", "2030-01-01T00:00:00Z"}) {
        snapshot.sampledAt = at(sampled);
        EXPECT_EQ(snapshot.rebased(now).sampledAt, now - 60s) << sampled;
    }
    snapshot.sampledAt.reset();
    EXPECT_EQ(snapshot.rebased(now).sampledAt, std::nullopt);
}

TEST(Rebased, ToItsOwnInstantKeepsThePostsAndRenamesTheDays)
{
    RoostSnapshot snapshot = decoded("snapshot-full.json");
    for (auto& day : snapshot.views.series) {
        day.day = "some day";
    }
    const RoostSnapshot moved = snapshot.rebased(snapshot.generatedAt);
    EXPECT_EQ(moved.posts, snapshot.posts);
    EXPECT_EQ(moved.generatedAt, snapshot.generatedAt);
    EXPECT_EQ(moved.views.series[0], (RoostSnapshot::Views::Day{"2025-02-27", 100}));
    EXPECT_EQ(moved.views.series[1], (RoostSnapshot::Views::Day{"2025-02-28", 0}));
    EXPECT_EQ(moved.views.series[2], (RoostSnapshot::Views::Day{"2025-03-01", 4700}));
}

TEST(Rebased, MovesBackwardsToo)
{
    const RoostSnapshot snapshot = decoded("snapshot-full.json");
    const Date now = at("2024-03-01T00:00:00Z");
    const RoostSnapshot moved = snapshot.rebased(now);
    EXPECT_EQ(moved.views.series[1].day, "2024-02-29");
    EXPECT_EQ(moved.posts.next[0].at - now, snapshot.posts.next[0].at - snapshot.generatedAt);
}

TEST(Rebased, KeepsEveryNumberAndTheRestOfAnySnapshot)
{
    test::RandomSnapshot random{4};
    for (int i = 0; i < 2'000; ++i) {
        const RoostSnapshot snapshot = random.snapshot();
        const Date now = random.date();
        RoostSnapshot moved = snapshot.rebased(now);
        ASSERT_EQ(moved.generatedAt, now);
        for (std::size_t n = 0; n < moved.posts.next.size(); ++n) {
            ASSERT_EQ(moved.posts.next[n].at - now, snapshot.posts.next[n].at - snapshot.generatedAt);
            moved.posts.next[n].at = snapshot.posts.next[n].at;
        }
        const std::size_t days = moved.views.series.size();
        for (std::size_t n = 0; n < days; ++n) {
            ASSERT_EQ(moved.views.series[n].day, dayString(now - std::chrono::days{days - 1 - n}));
            moved.views.series[n].day = snapshot.views.series[n].day;
        }
        for (std::size_t n = 0; moved.followers && n < moved.followers->series.size(); ++n) {
            moved.followers->series[n].day = snapshot.followers->series[n].day;
        }
        ASSERT_EQ(moved.sampledAt.has_value(), snapshot.sampledAt.has_value());
        moved.sampledAt = snapshot.sampledAt;
        moved.generatedAt = snapshot.generatedAt;
        ASSERT_EQ(moved, snapshot);
    }
}

} // namespace
} // namespace roost
