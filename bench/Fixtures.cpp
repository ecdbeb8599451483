#include "bench/Fixtures.h"

#include <array>
#include <utility>

namespace roost::bench {

namespace {

using namespace std::chrono_literals;

constexpr int seriesDays = 30;
constexpr int plannedPosts = 8;
constexpr Date noon{std::chrono::sys_days{std::chrono::year{2025} / 3 / 14} + 12h + 345ms};

constexpr std::array<std::pair<const char*, const char*>, 8> platforms{{{"instagram", "Instagram"},
                                                                        {"youtube", "YouTube"},
                                                                        {"facebook", "Facebook"},
                                                                        {"linkedin", "LinkedIn"},
                                                                        {"mastodon", "Mastodon"},
                                                                        {"bluesky", "Bluesky"},
                                                                        {"threads", "Threads"},
                                                                        {"pinterest", "Pinterest"}}};

constexpr std::array texts{
    "Behind the scenes: how we pack three hundred parcels before lunch, and what we would do differently.",
    "Neue Öffnungszeiten ab Montag – wir freuen uns auf euch! 🎉",
    "\"Slow is smooth, smooth is fast.\"\nOur workshop notes, part 3 of 5.",
    "New in the shop: the spring collection. Which colour is yours?",
};

WebURL link(const std::string& text) { return WebURL::parse(text).value(); }

template <class Day>
std::vector<Day> series(std::int64_t first, std::int64_t step)
{
    std::vector<Day> days;
    for (int i = 0; i < seriesDays; ++i) {
        days.push_back({dayString(noon - std::chrono::days{seriesDays - 1 - i}), first + i * step});
    }
    return days;
}

RoostSnapshot::Posts::Next planned(int number, int position)
{
    return {.id = "post-" + std::to_string(number) + "-" + std::to_string(position),
            .at = noon + position * 7h + 30min,
            .text = texts[static_cast<std::size_t>(position) % texts.size()],
            .networks = {"instagram", "facebook", "mastodon"}};
}

} // namespace

RoostSnapshot snapshotOf(int number)
{
    using Reporting = RoostSnapshot::Network::Reporting;
    const std::string name = std::to_string(number);
    RoostSnapshot made;
    made.generatedAt = noon;
    made.sampledAt = noon - 1min;
    made.roostUrl = link("https://roost.example.org/profiles/" + name);
    made.profile = {.id = "profile-" + name,
                    .name = "Café Nº " + name,
                    .avatarUrl = link("https://cdn.example.org/avatars/" + name + ".png?size=256")};
    made.views = {.days = 7,
                  .total = 1'234'567 + number,
                  .previous = 1'198'004 + number,
                  .basis = RoostSnapshot::Views::Basis::growth,
                  .series = series<RoostSnapshot::Views::Day>(31'000 + number, 977)};
    made.posts = {.published7 = 19, .scheduled = plannedPosts, .failed = 1, .next = {}};
    for (int i = 0; i < plannedPosts; ++i) {
        made.posts.next.push_back(planned(number, i));
    }
    made.best = {.platform = "instagram",
                 .label = "Instagram",
                 .views = 88'123 + number,
                 .text = texts[0],
                 .url = link("https://www.example.com/p/" + name + "/?from=roost")};
    made.followers = {.total = 48'211 + number,
                      .series = series<RoostSnapshot::Followers::Day>(47'000 + number, 41),
                      .networks = {}};
    for (std::size_t i = 0; i < platforms.size(); ++i) {
        const auto& [platform, label] = platforms[i];
        const auto count = static_cast<std::int64_t>(i + 1) * 4'321 + number;
        const bool fails = i + 1 == platforms.size();
        made.networks.push_back({.platform = platform,
                                 .label = label,
                                 .username = "cafe.no" + name,
                                 .views = fails ? std::nullopt : std::optional{count},
                                 .posts = static_cast<std::int64_t>(i),
                                 .reporting = fails ? Reporting::failed : Reporting::ok});
        made.followers->networks.push_back(
            {.platform = platform, .username = "cafe.no" + name, .count = count, .delta7 = 12 - count % 25});
    }
    return made;
}

RoostStoreFile storeFileOf(int profiles)
{
    RoostStoreFile made;
    made.writtenAt = noon;
    for (int i = 0; i < profiles; ++i) {
        RoostSnapshot snapshot = snapshotOf(i);
        made.accounts.push_back({.profileId = snapshot.profile.id,
                                 .profileName = snapshot.profile.name,
                                 .status = RoostAccountRecord::Status::ok,
                                 .snapshot = std::move(snapshot),
                                 .fetchedAt = noon,
                                 .lastAttemptAt = noon});
    }
    return made;
}

} // namespace roost::bench
