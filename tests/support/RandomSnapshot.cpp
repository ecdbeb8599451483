#include "tests/support/RandomSnapshot.h"

#include <array>
#include <limits>
#include <string_view>

namespace roost::test {

namespace {

/// Every length in UTF-8, both sides of each border, and what JSON has to escape.
constexpr std::array<std::string_view, 32> characters{
    "a",      "Z",      "0",      " ",      "\"",         "\\",         "/",          "\n",
    "\t",     "\r",     "\b",     "\f",     "\x01",       "\x1F",       "\x7F",       "{",
    "]",      ",",      ":",      "\u00E4", "\u07FF",     "\u0800",     "\u2028",     "\uD7FF",
    "\uE000", "\uFEFF", "\uFFFD", "\uFFFF", "\U00010000", "\U0001F600", "\U0010FFFF", "e\u0301"};

constexpr std::array<std::string_view, 8> links{
    "https://roost.brisken.world",
    "http://localhost:8080/",
    "HTTPS://Example.COM/Path?Query=%7e#Part",
    "https://[::1]:443/a//b/../c",
    "https://user@host/%20?a=b&c=d+e",
    "https://xn--bcher-kva.example/",
    "https://b\u00FCcher.example/\u00FC",
    "http://192.0.2.1/?",
};

} // namespace

std::int64_t RandomSnapshot::integer()
{
    constexpr std::array<std::int64_t, 6> special{0,
                                                  1,
                                                  -1,
                                                  9'007'199'254'740'993,
                                                  std::numeric_limits<std::int64_t>::max(),
                                                  std::numeric_limits<std::int64_t>::min()};
    switch (below(3)) {
    case 0:
        return special.at(below(special.size()));
    case 1:
        return static_cast<std::int64_t>(below(100'000));
    default:
        const auto bits = static_cast<std::int64_t>(engine_() >> below(64));
        return maybe() ? bits : ~bits;
    }
}

Date RandomSnapshot::date()
{
    using namespace std::chrono;
    constexpr Date first{sys_days{year{0} / January / 1}};
    constexpr Date end{sys_days{year{10000} / January / 1}};
    constexpr auto span = static_cast<std::uint64_t>((end - first).count());
    return first + milliseconds{static_cast<std::int64_t>(below(span))};
}

std::string RandomSnapshot::text()
{
    std::string made;
    for (std::uint64_t count = below(4) == 0 ? below(40) : below(8); count > 0; --count) {
        if (below(20) == 0) {
            made.push_back('\0');
        } else {
            made.append(characters.at(below(characters.size())));
        }
    }
    return made;
}

std::optional<WebURL> RandomSnapshot::link()
{
    return maybe() ? WebURL::parse(links.at(below(links.size()))) : std::nullopt;
}

std::vector<std::string> RandomSnapshot::texts()
{
    return some([this] { return text(); });
}

RoostSnapshot::Views RandomSnapshot::views()
{
    RoostSnapshot::Views made;
    made.days = integer();
    made.total = perhaps([this] { return integer(); });
    made.previous = perhaps([this] { return integer(); });
    made.basis = static_cast<RoostSnapshot::Views::Basis>(below(2));
    made.series = some([this] { return RoostSnapshot::Views::Day{text(), integer()}; });
    return made;
}

RoostSnapshot::Network RandomSnapshot::network()
{
    RoostSnapshot::Network made;
    made.platform = text();
    made.label = text();
    made.username = perhaps([this] { return text(); });
    made.views = perhaps([this] { return integer(); });
    made.posts = integer();
    made.reporting = static_cast<RoostSnapshot::Network::Reporting>(below(5));
    return made;
}

RoostSnapshot::Posts RandomSnapshot::posts()
{
    RoostSnapshot::Posts made;
    made.published7 = integer();
    made.scheduled = integer();
    made.failed = integer();
    made.next = some([this] { return RoostSnapshot::Posts::Next{text(), date(), text(), texts()}; });
    return made;
}

RoostSnapshot::BestPost RandomSnapshot::best() { return {text(), text(), integer(), text(), link()}; }

RoostSnapshot::Followers RandomSnapshot::followers()
{
    RoostSnapshot::Followers made;
    made.total = integer();
    made.series = some([this] { return RoostSnapshot::Followers::Day{text(), integer()}; });
    made.networks = some([this] {
        RoostSnapshot::Followers::FollowerNetwork network;
        network.platform = text();
        network.username = perhaps([this] { return text(); });
        network.count = integer();
        network.delta7 = perhaps([this] { return integer(); });
        return network;
    });
    return made;
}

RoostSnapshot RandomSnapshot::snapshot()
{
    RoostSnapshot made;
    made.version = integer();
    made.generatedAt = date();
    made.profile = {text(), text(), link()};
    made.views = views();
    made.networks = some([this] { return network(); });
    made.posts = posts();
    made.best = perhaps([this] { return best(); });
    made.followers = perhaps([this] { return followers(); });
    made.sampledAt = perhaps([this] { return date(); });
    made.roostUrl = link();
    return made;
}

RoostAccountRecord RandomSnapshot::account()
{
    RoostAccountRecord made;
    made.profileId = text();
    made.profileName = text();
    made.status = static_cast<RoostAccountRecord::Status>(below(2));
    made.snapshot = perhaps([this] { return snapshot(); });
    made.fetchedAt = perhaps([this] { return date(); });
    made.lastAttemptAt = perhaps([this] { return date(); });
    return made;
}

RoostStoreFile RandomSnapshot::storeFile()
{
    return {integer(), date(), some([this] { return account(); })};
}

} // namespace roost::test
