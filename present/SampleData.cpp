#include "present/SampleData.h"

#include <limits>
#include <string>
#include <vector>

namespace roost::SampleData {

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using Basis = RoostSnapshot::Views::Basis;
using FollowerNetwork = RoostSnapshot::Followers::FollowerNetwork;
using Network = RoostSnapshot::Network;
using Next = RoostSnapshot::Posts::Next;
using Reporting = Network::Reporting;

constexpr auto most = std::numeric_limits<std::int64_t>::max();

/// Samples are made at this instant and then moved in time, which also names the days of their series.
constexpr Date origin{};

template <class Day>
std::vector<Day> days(const std::vector<std::int64_t>& values)
{
    std::vector<Day> series;
    for (const std::int64_t value : values) {
        series.push_back({{}, value});
    }
    return series;
}

std::vector<RoostSnapshot::Views::Day> views(const std::vector<std::int64_t>& values)
{
    return days<RoostSnapshot::Views::Day>(values);
}

std::vector<RoostSnapshot::Followers::Day> totals(const std::vector<std::int64_t>& values)
{
    return days<RoostSnapshot::Followers::Day>(values);
}

RoostSnapshot snapshotOf(RoostSnapshot::Profile profile)
{
    RoostSnapshot snapshot;
    snapshot.generatedAt = origin;
    snapshot.profile = std::move(profile);
    return snapshot;
}

std::string repeated(std::string_view text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i) {
        all.append(text);
    }
    return all;
}

} // namespace

RoostSnapshot minimal(Date now)
{
    std::vector<std::int64_t> rising;
    for (std::int64_t day = 0; day < 14; ++day) {
        rising.push_back(100 + 40 * day);
    }
    RoostSnapshot made = snapshotOf({"sample", "Brisken Roost", std::nullopt});
    made.views = {7, 4'800, 3'900, Basis::growth, views(rising)};
    made.networks = {
        {"instagram", "Instagram", "briskenroost", 2'600, 5, Reporting::ok},
        {"bluesky", "Bluesky", "roost.brisken.world", 1'400, 7, Reporting::ok},
        {"linkedin", "LinkedIn", "brisken", 800, 2, Reporting::ok},
    };
    made.posts = {14,
                  2,
                  0,
                  {{"sample-1", origin + hours{3}, "Behind the scenes", {"instagram"}},
                   {"sample-2", origin + hours{27}, "What we learned", {"bluesky", "linkedin"}}}};
    return made.rebased(now);
}

RoostSnapshot rich(Date now)
{
    RoostSnapshot made = snapshotOf(
        {"sample-rich", "Harbour Bakery", WebURL::parse("https://roost.brisken.world/avatars/sample.png")});
    made.views = {7, 48'210, 39'460, Basis::growth,
                  views({3'900, 4'120, 5'060, 6'350, 7'100, 6'480, 6'450, 5'870, 6'240, 7'380, 9'120, 7'410,
                         6'080, 6'110})};
    made.networks = {
        {"instagram", "Instagram", "harbourbakery", 21'400, 6, Reporting::ok},
        {"tiktok", "TikTok", "harbourbakery", 15'930, 4, Reporting::ok},
        {"youtube", "YouTube", "HarbourBakery", 6'210, 1, Reporting::ok},
        {"bluesky", "Bluesky", "harbour.example", 3'020, 9, Reporting::ok},
        {"facebook", "Facebook", std::nullopt, 1'650, 3, Reporting::ok},
        {"pinterest", "Pinterest", "harbourbakery", std::nullopt, 0, Reporting::empty},
    };
    made.posts = {
        23,
        5,
        1,
        {{"rich-1", origin + minutes{40}, "Rye from the new oven, still warm", {"instagram", "facebook"}},
         {"rich-2", origin + hours{6}, "Why our dough rests for two days", {"tiktok"}},
         {"rich-3", origin + hours{25}, "", {"youtube"}},
         {"rich-4",
          origin + hours{76},
          "Open on Sunday for the harbour run",
          {"instagram", "bluesky", "facebook"}},
         {"rich-5", origin + hours{220}, "Summer menu", {"instagram"}}}};
    made.best = {"tiktok", "TikTok", 12'480, "Shaping 200 rolls before sunrise",
                 WebURL::parse("https://social.example/video/73")};
    made.followers = {18'342,
                      totals({17'960, 17'998, 18'047, 18'031, 18'121, 18'190, 18'236, 18'342}),
                      {{"instagram", "harbourbakery", 11'020, 214},
                       {"tiktok", "harbourbakery", 5'710, 198},
                       {"bluesky", "harbour.example", 1'612, -30}}};
    made.sampledAt = origin;
    made.roostUrl = WebURL::parse("https://roost.brisken.world/roost/overview");
    return made.rebased(now);
}

RoostSnapshot sparse(Date now)
{
    RoostSnapshot made = snapshotOf({"sample-sparse", "New here", std::nullopt});
    made.views = {7, std::nullopt, std::nullopt, Basis::published, views({0})};
    made.networks = {{"bluesky", "Bluesky", std::nullopt, std::nullopt, 0, Reporting::empty}};
    made.followers = {3, totals({3}), {{"bluesky", std::nullopt, 3, std::nullopt}}};
    return made.rebased(now);
}

RoostSnapshot failingNetworks(Date now)
{
    RoostSnapshot made = snapshotOf({"sample-failing", "Harbour Bakery", std::nullopt});
    made.views = {7, 1'204, 2'860, Basis::published, views({410, 280, 207, 0, 160, 88, 59})};
    made.networks = {
        {"instagram", "Instagram", "harbourbakery", std::nullopt, 2, Reporting::failed},
        {"x", "X", "harbourbakery", 912, 4, Reporting::failed},
        {"telegram", "Telegram", "harbour", 292, 1, Reporting::ok},
        {"threads", "Threads", "harbourbakery", std::nullopt, 3, Reporting::unsupported},
        {"mastodon", "Mastodon", "harbour@social.example", std::nullopt, 1, Reporting::unknown},
    };
    made.posts = {11, 1, 3, {{"failing-1", origin - hours{2}, "Should have gone out", {"instagram"}}}};
    return made.rebased(now);
}

RoostSnapshot overflowing(Date now)
{
    const std::string word = "Donaudampfschifffahrtsgesellschaftskapitän";
    RoostSnapshot made = snapshotOf({"sample-overflowing", repeated(word + " ", 6), std::nullopt});
    made.views = {14, most, 1'000'000, Basis::growth,
                  views({most / 2, 1, 0, -40, most, 999'999'999'999, 12, 0, most, 5, 6, 7, 8, most})};
    for (int i = 0; i < 24; ++i) {
        const std::string platform = "network-" + std::to_string(i);
        made.networks.push_back({platform, word + std::to_string(i), repeated("long.name.", 12), most - i,
                                 999'999'999, Reporting::ok});
    }
    made.posts = {most, most, most, {}};
    for (int i = 0; i < 60; ++i) {
        made.posts.next.push_back({"overflowing-" + std::to_string(i), origin + hours{31 * i},
                                   repeated("A text that goes on, line after line.\n", 40),
                                   std::vector<std::string>(24, "network-1")});
    }
    // One word without a place to break it, and a family of emoji that is one character of many parts.
    made.best = {"network-1", word + word, most,
                 repeated(word, 30) + repeated("👩‍👩‍👧‍👦", 40), std::nullopt};
    made.followers = {
        most, totals({1, most, most - 1, most}), {{"network-1", repeated(word, 3), most, 86'400}}};
    made.sampledAt = origin;
    return made.rebased(now);
}

RoostSnapshot rightToLeft(Date now)
{
    RoostSnapshot made = snapshotOf({"sample-right-to-left", "מאפיית הנמל", std::nullopt});
    made.views = {7, 9'640, 10'220, Basis::growth, views({1'540, 1'310, 1'620, 1'480, 1'190, 1'250, 1'250})};
    made.networks = {
        {"instagram", "إنستغرام", "makhbaz.almina", 5'310, 4, Reporting::ok},
        {"facebook", "פייסבוק", "מאפיית הנמל", 3'020, 3, Reporting::ok},
        {"telegram", "Telegram قناة", std::nullopt, 1'310, 2, Reporting::ok},
        {"x", "X (לשעבר Twitter)", "@harbour", std::nullopt, 0, Reporting::failed},
    };
    made.posts = {9,
                  2,
                  0,
                  {{"rtl-1", origin + hours{2}, "לחם שיפון חם מהתנור, 20% הנחה!", {"facebook"}},
                   {"rtl-2", origin + hours{50}, "وصفة (new) من Harbour Bakery", {"instagram"}}}};
    made.best = {"instagram", "إنستغرام", 2'204, "أول خبز في الصباح – 06:00", std::nullopt};
    made.followers = {4'120, totals({4'080, 4'095, 4'120}), {{"instagram", "makhbaz.almina", 4'120, 61}}};
    return made.rebased(now);
}

} // namespace roost::SampleData
